#include "ado/spilling_memory.h"

#include <sys/mman.h>
#include <sys/stat.h>

#include <new>
#include <string>

#include "ado/temporary_file.h"

namespace orvane::ado {

namespace {

/// Takes the room on the disk, also where the file system cannot reserve any: a page without room
/// would end the process when it is written. Returns 0 or the error number.
int TakeRoom(const files::Descriptor& file, std::size_t bytes) {
  int nError = files::Reserve(file, 0, bytes);
  struct stat held {};
  if (nError != 0 || ::fstat(file.Get(), &held) != 0) return nError;
  constexpr std::size_t kBlock = 512;
  if (static_cast<std::size_t>(held.st_blocks) * kBlock >= bytes) return 0;
  const std::string zeros(std::size_t{1} << 20, '\0');
  for (std::size_t from = 0; from < bytes && nError == 0; from += zeros.size()) {
    nError = files::WriteAt(file, from, std::string_view(zeros).substr(0, bytes - from));
  }
  return nError;
}

void* MapFile(std::size_t bytes) {
  const TemporaryFile file;
  const int nError = TakeRoom(file.Get(), bytes);
  if (nError != 0) file.Fail(nError);
  void* const address =
      ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED, file.Get().Get(), 0);
  if (address == MAP_FAILED) throw std::bad_alloc();
  return address;
}

}  // namespace

void* SpillingMemory::do_allocate(std::size_t bytes, std::size_t alignment) {
  std::pmr::memory_resource* const heap = std::pmr::new_delete_resource();
  if (bytes < kLeastCounted) return heap->allocate(bytes, alignment);
  if (m_budget->Take(bytes)) {
    try {
      return heap->allocate(bytes, alignment);
    } catch (...) {
      m_budget->GiveBack(bytes);
      throw;
    }
  }
  void* const piece = MapFile(bytes);
  try {
    const std::lock_guard lock(m_mutex);
    m_mapped.insert(piece);
  } catch (...) {
    ::munmap(piece, bytes);
    throw;
  }
  return piece;
}

void SpillingMemory::do_deallocate(void* piece, std::size_t bytes, std::size_t alignment) {
  if (bytes >= kLeastCounted) {
    const std::lock_guard lock(m_mutex);
    if (m_mapped.erase(piece) > 0) {
      ::munmap(piece, bytes);
      return;
    }
    m_budget->GiveBack(bytes);
  }
  std::pmr::new_delete_resource()->deallocate(piece, bytes, alignment);
}

}  // namespace orvane::ado
