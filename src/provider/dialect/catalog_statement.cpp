#include "provider/dialect/catalog_statement.h"

#include <charconv>

namespace orvane::provider::dialect {
namespace {

class Reader {
 public:
  Reader(std::string_view sStatement, const std::vector<Token>& tokens)
      : m_sStatement(sStatement), m_tokens(tokens) {}

  CatalogStatement Read() {
    const bool bCreate = Next().IsWord("CREATE");
    Next();
    const Token& name = Next();
    if (!name.IsIdentifier()) {
      Fail(name, "The name of the catalog is missing", "write it between double quotes");
    }
    if (bCreate) return ReadCreate(name.sText);
    ExpectEnd();
    return DropDatabase{name.sText};
  }

 private:
  const Token& Peek() const { return m_tokens[m_position]; }
  const Token& Next() {
    const Token& token = m_tokens[m_position];
    if (token.kind != TokenKind::End) ++m_position;
    return token;
  }
  [[noreturn]] void Fail(const Token& token, const platform::Text& sWhat,
                         const platform::Text& sAdvice) const {
    FailAt(m_sStatement, token.position, sWhat, sAdvice);
  }
  void Expect(std::string_view sSymbol) {
    const Token& token = Next();
    if (!token.IsSymbol(sSymbol)) {
      Fail(token, "\"" + platform::Text(sSymbol) + "\" is missing",
           "write ON (PATH='folder') or ON (SIZE=kilobytes)");
    }
  }
  void ExpectEnd() {
    if (Peek().kind != TokenKind::End) {
      Fail(Peek(), "The statement goes on", "remove what follows the name of the catalog");
    }
  }

  CreateDatabase ReadCreate(const platform::Text& sName) {
    CreateDatabase create;
    create.sName = sName;
    if (Peek().IsWord("ON")) {
      Next();
      Expect("(");
      ReadItem(create);
      while (Peek().IsSymbol(",")) {
        Next();
        ReadItem(create);
      }
      const Token& end = Peek();
      Expect(")");
      if (!create.sFile.empty() && (!create.sPath.empty() || create.llKilobytes != 0)) {
        Fail(end, "A file is taken in as it is and where it lies",
             "leave the path and the size out");
      }
    }
    ExpectEnd();
    return create;
  }

  void ReadItem(CreateDatabase& create) {
    const Token& item = Next();
    const bool bFile = item.IsWord("FILE");
    if (!bFile && !item.IsWord("PATH") && !item.IsWord("SIZE")) {
      Fail(item, "Only a path and a size can be given",
           "write ON (PATH='folder') or ON (SIZE=kilobytes)");
    }
    Expect("=");
    const Token& value = Next();
    if (!item.IsWord("SIZE")) {
      if (value.kind != TokenKind::String) {
        Fail(value, "The path is missing", "write it between single quotes");
      }
      (bFile ? create.sFile : create.sPath) = value.sText;
      return;
    }
    const char* const end = value.sText.data() + value.sText.size();
    const auto read = std::from_chars(value.sText.data(), end, create.llKilobytes);
    if (value.kind != TokenKind::Number || read.ec != std::errc() || read.ptr != end ||
        create.llKilobytes < 1) {
      Fail(value, "The size is no number of kilobytes", "write a whole number above 0");
    }
  }

  std::string_view m_sStatement;
  const std::vector<Token>& m_tokens;
  std::size_t m_position = 0;
};

}  // namespace

std::optional<CatalogStatement> ReadCatalogStatement(std::string_view sStatement,
                                                     const std::vector<Token>& tokens) {
  if (tokens.size() < 2 || !tokens[1].IsWord("DATABASE") ||
      !(tokens[0].IsWord("CREATE") || tokens[0].IsWord("DROP"))) {
    return std::nullopt;
  }
  return Reader(sStatement, tokens).Read();
}

}  // namespace orvane::provider::dialect
