#include "console/document/document_line.h"

#include <limits>
#include <nlohmann/json.hpp>

namespace orvane::console {

using platform::Text;
using Json = nlohmann::json;

/// Takes the members as the parser comes upon them.
class DocumentLine::Taker final : public nlohmann::json_sax<Json> {
 public:
  explicit Taker(DocumentLine& line) : m_line(line) {}

  bool null() override { return Refuse("holds a null"); }
  bool boolean(bool bValue) override { return Take(bValue); }
  bool number_integer(std::int64_t iValue) override { return Take(iValue); }
  bool number_unsigned(std::uint64_t uValue) override {
    if (uValue > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
      return Refuse("holds an integer that is out of range");
    }
    return Take(static_cast<std::int64_t>(uValue));
  }
  bool number_float(double, const Text&) override {
    return Refuse("holds a number that is no integer");
  }
  bool string(Text& sValue) override { return Take(std::move(sValue)); }
  bool binary(Json::binary_t&) override { return Refuse("holds bytes"); }
  bool start_object(std::size_t) override {
    return ++m_nDepth == 1 || Refuse("holds an object inside its object");
  }
  bool end_object() override { return true; }
  bool start_array(std::size_t) override { return Refuse("holds a list"); }
  bool end_array() override { return true; }
  bool key(Text& sName) override {
    if (m_line.Has(sName)) return Refuse("names a member twice");
    if (m_line.m_nMembers == kMaximum) return Refuse("has too many members");
    m_line.m_members[m_line.m_nMembers++] = {std::move(sName), {}};
    return true;
  }
  bool parse_error(std::size_t, const Text&, const Json::exception&) override {
    return Refuse("is no JSON object in UTF-8");
  }

 private:
  template <class T>
  bool Take(T value) {
    if (m_line.m_nMembers == 0) return Refuse("is no JSON object in UTF-8");
    m_line.m_members[m_line.m_nMembers - 1].value = std::move(value);
    return true;
  }
  bool Refuse(const char* sProblem) {
    m_line.m_sProblem = sProblem;
    return false;
  }

  DocumentLine& m_line;
  int m_nDepth = 0;
};

bool DocumentLine::Read(std::string_view sLine) {
  Taker taker(*this);
  return Json::sax_parse(sLine.begin(), sLine.end(), &taker);
}

const DocumentLine::Member* DocumentLine::FindMember(std::string_view sName) const {
  for (std::size_t i = 0; i < m_nMembers; ++i) {
    if (m_members[i].sName == sName) return &m_members[i];
  }
  return nullptr;
}

}  // namespace orvane::console
