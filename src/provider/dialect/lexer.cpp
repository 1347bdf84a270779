#include "provider/dialect/lexer.h"

#include <algorithm>
#include <array>

#include "platform/failure.h"
#include "provider/dialect/statement_work.h"

namespace orvane::provider::dialect {
namespace {

using platform::Text;

char Upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c;
}
bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
bool IsHexDigit(char c) {
  return IsDigit(c) || (Upper(c) >= 'A' && Upper(c) <= 'F');
}
bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f';
}
// What may begin a bare name; every character outside of ASCII may.
bool StartsWord(char c) {
  return (Upper(c) >= 'A' && Upper(c) <= 'Z') || c == '_' ||
         (static_cast<unsigned char>(c) >= 0x80);
}
bool IsWordCharacter(char c) {
  return StartsWord(c) || IsDigit(c) || c == '$';
}

// Longest first.
constexpr std::array<std::string_view, 26> kSymbols = {
    "->>", "<=", ">=", "<>", "!=", "==", "||", "<<", ">>", "->", "(", ")", ",",
    ".",   ";",  "=",  "<",  ">",  "+",  "-",  "*",  "/",  "%",  "&", "|", "~"};

class Lexer {
 public:
  Lexer(std::string_view sStatement, StatementWork& work)
      : m_sStatement(sStatement), m_work(work) {}

  std::vector<Token> Read() {
    // An engine would take this character for the end of the text.
    if (const auto zero = m_sStatement.find('\0'); zero != std::string_view::npos) {
      FailAt(m_sStatement, zero, "There is a zero character", "remove it");
    }
    while (SkipBlanksAndComments()) {
      const std::size_t before = m_tokens.size();
      if (before == kMostTokens) {
        FailAt(m_sStatement, m_position, "The statement is too long", "send it in parts");
      }
      m_work.Step();
      ReadToken();
      CheckOneStatement(m_tokens[before]);
    }
    while (!m_tokens.empty() && m_tokens.back().IsSymbol(";")) m_tokens.pop_back();
    if (m_tokens.empty()) {
      throw platform::Failure(platform::failure::kSqlError,
                              "There is no statement; enter one such as SELECT.");
    }
    m_tokens.push_back({TokenKind::End, m_sStatement.size(), 0, {}, {}});
    return std::move(m_tokens);
  }

 private:
  char Peek(std::size_t nAhead = 0) const {
    return m_position + nAhead < m_sStatement.size() ? m_sStatement[m_position + nAhead] : '\0';
  }
  bool AtEnd() const { return m_position >= m_sStatement.size(); }

  // False at the end of the text. A comment that never ends is one to the end.
  bool SkipBlanksAndComments() {
    for (;;) {
      if (AtEnd()) return false;
      if (IsBlank(Peek())) {
        ++m_position;
      } else if (Peek() == '-' && Peek(1) == '-') {
        m_position = std::min(m_sStatement.find('\n', m_position), m_sStatement.size());
      } else if (Peek() == '/' && Peek(1) == '*') {
        const auto end = m_sStatement.find("*/", m_position + 2);
        if (end == std::string_view::npos) {
          FailAt(m_sStatement, m_position, "A comment never ends", "end it with */");
        }
        m_position = end + 2;
      } else {
        return true;
      }
    }
  }

  void CheckOneStatement(const Token& token) const {
    if (token.IsSymbol(";")) return;
    if (m_tokens.size() >= 2 && m_tokens[m_tokens.size() - 2].IsSymbol(";")) {
      FailAt(m_sStatement, token.position, "A second statement begins",
             "send one statement at a time");
    }
  }

  void Add(TokenKind kind, std::size_t start, Text sText) {
    Token token{kind, start, m_position - start, std::move(sText), {}};
    if (kind == TokenKind::Word) {
      token.sUpper = token.sText;
      std::transform(token.sUpper.begin(), token.sUpper.end(), token.sUpper.begin(), Upper);
    }
    m_tokens.push_back(std::move(token));
  }

  void ReadToken() {
    const char c = Peek();
    if ((c == 'x' || c == 'X') && Peek(1) == '\'') {
      ReadBlob();
    } else if (StartsWord(c)) {
      const std::size_t start = m_position;
      while (!AtEnd() && IsWordCharacter(Peek())) ++m_position;
      Add(TokenKind::Word, start, Text(m_sStatement.substr(start, m_position - start)));
    } else if (IsDigit(c) || (c == '.' && IsDigit(Peek(1)))) {
      ReadNumber();
    } else if (c == '\'') {
      ReadQuoted(TokenKind::String, '\'', true);
    } else if (c == '"' || c == '`') {
      ReadQuoted(TokenKind::QuotedIdentifier, c, true);
    } else if (c == '[') {
      ReadQuoted(TokenKind::QuotedIdentifier, ']', false);
    } else if (c == '?' && !IsWordCharacter(Peek(1))) {
      ++m_position;
      Add(TokenKind::Parameter, m_position - 1, "?");
    } else if (c == '?' || c == ':' || c == '@' || c == '$' || c == '#') {
      FailAt(m_sStatement, m_position, "There is a parameter mark",
             "write the value itself into the statement");
    } else {
      ReadSymbol();
    }
  }

  void ReadQuoted(TokenKind kind, char cQuote, bool bDoubled) {
    const std::size_t start = m_position++;
    Text sText;
    for (;; ++m_position) {
      if (AtEnd()) {
        FailAt(m_sStatement, start, "A quote is never closed", Text("close it with ") + cQuote);
      }
      if (Peek() == cQuote) {
        if (!bDoubled || Peek(1) != cQuote) break;
        ++m_position;
      }
      m_work.Step();
      sText += Peek();
    }
    ++m_position;
    Add(kind, start, std::move(sText));
  }

  void ReadBlob() {
    const std::size_t start = m_position;
    m_position += 2;
    while (IsHexDigit(Peek())) ++m_position;
    if (Peek() != '\'' || (m_position - start) % 2 != 0) {
      FailAt(m_sStatement, start, "Bytes are unfinished",
             "write an even number of hexadecimal digits between quotes, such as x'00ff'");
    }
    ++m_position;
    Add(TokenKind::Blob, start, Text(m_sStatement.substr(start, m_position - start)));
  }

  void ReadNumber() {
    const std::size_t start = m_position;
    if (Peek() == '0' && Upper(Peek(1)) == 'X' && IsHexDigit(Peek(2))) {
      m_position += 2;
      while (IsHexDigit(Peek())) ++m_position;
    } else {
      while (IsDigit(Peek())) ++m_position;
      if (Peek() == '.') {
        ++m_position;
        while (IsDigit(Peek())) ++m_position;
      }
      const std::size_t nSign = Peek(1) == '+' || Peek(1) == '-' ? 2 : 1;
      if (Upper(Peek()) == 'E' && IsDigit(Peek(nSign))) {
        m_position += nSign;
        while (IsDigit(Peek())) ++m_position;
      }
    }
    if (IsWordCharacter(Peek()) && !AtEnd()) {
      FailAt(m_sStatement, start, "A name begins with a digit", "put it between double quotes");
    }
    Add(TokenKind::Number, start, Text(m_sStatement.substr(start, m_position - start)));
  }

  void ReadSymbol() {
    for (const auto sSymbol : kSymbols) {
      if (m_sStatement.substr(m_position, sSymbol.size()) == sSymbol) {
        const std::size_t start = m_position;
        m_position += sSymbol.size();
        Add(TokenKind::Symbol, start, Text(sSymbol));
        return;
      }
    }
    FailAt(m_sStatement, m_position, "There is a character without a meaning",
           "remove it or put it between quotes");
  }

  std::string_view m_sStatement;
  StatementWork& m_work;
  std::size_t m_position = 0;
  std::vector<Token> m_tokens;
};

}  // namespace

std::vector<Token> ReadTokens(std::string_view sStatement, StatementWork& work) {
  return Lexer(sStatement, work).Read();
}

Text CharacterNumber(std::string_view sStatement, std::size_t position) {
  std::size_t nCharacter = 1;
  for (const char c : sStatement.substr(0, position)) {
    // Bytes 10xxxxxx go on with a character that has begun.
    if ((static_cast<unsigned char>(c) & 0xC0U) != 0x80U) ++nCharacter;
  }
  return std::to_string(nCharacter);
}

platform::Failure FailureAt(std::string_view sStatement, std::size_t position, const Text& sWhat,
                            const Text& sAdvice) {
  return {platform::failure::kSqlError,
          sWhat + " (character " + CharacterNumber(sStatement, position) + " of the statement); " +
              sAdvice + ".",
          "ORVOLEDB", 0, Text(sStatement)};
}

void FailAt(std::string_view sStatement, std::size_t position, const Text& sWhat,
            const Text& sAdvice) {
  throw FailureAt(sStatement, position, sWhat, sAdvice);
}

Text UpperCase(Text sName) {
  std::transform(sName.begin(), sName.end(), sName.begin(), Upper);
  return sName;
}

bool SameName(std::string_view sLeft, std::string_view sRight) {
  return std::equal(sLeft.begin(), sLeft.end(), sRight.begin(), sRight.end(),
                    [](char cLeft, char cRight) { return Upper(cLeft) == Upper(cRight); });
}

}  // namespace orvane::provider::dialect
