#include "tests/provider/engines/scarce_memory.h"

#include <cstdlib>
#include <limits>
#include <new>

namespace orvane::tests {

namespace {

constexpr std::size_t kPlenty = std::numeric_limits<std::size_t>::max();

thread_local std::size_t t_nPieces = kPlenty;

// Null when there is none left.
void* PieceOf(std::size_t nBytes) noexcept {
  if (t_nPieces == 0) return nullptr;
  if (t_nPieces != kPlenty) --t_nPieces;
  return std::malloc(nBytes == 0 ? 1 : nBytes);
}

void* CertainPieceOf(std::size_t nBytes) {
  void* const piece = PieceOf(nBytes);
  if (piece == nullptr) throw std::bad_alloc();
  return piece;
}

}  // namespace

ScarceMemory::ScarceMemory(std::size_t nPieces) {
  t_nPieces = nPieces;
}

ScarceMemory::~ScarceMemory() {
  t_nPieces = kPlenty;
}

}  // namespace orvane::tests

void* operator new(std::size_t nBytes) {
  return orvane::tests::CertainPieceOf(nBytes);
}
void* operator new[](std::size_t nBytes) {
  return orvane::tests::CertainPieceOf(nBytes);
}
void* operator new(std::size_t nBytes, const std::nothrow_t& /*unused*/) noexcept {
  return orvane::tests::PieceOf(nBytes);
}
void* operator new[](std::size_t nBytes, const std::nothrow_t& /*unused*/) noexcept {
  return orvane::tests::PieceOf(nBytes);
}
void operator delete(void* piece) noexcept {
  std::free(piece);
}
void operator delete[](void* piece) noexcept {
  std::free(piece);
}
void operator delete(void* piece, std::size_t /*nBytes*/) noexcept {
  std::free(piece);
}
void operator delete[](void* piece, std::size_t /*nBytes*/) noexcept {
  std::free(piece);
}
void operator delete(void* piece, const std::nothrow_t& /*unused*/) noexcept {
  std::free(piece);
}
void operator delete[](void* piece, const std::nothrow_t& /*unused*/) noexcept {
  std::free(piece);
}
