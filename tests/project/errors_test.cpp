// Every sentence that a failure is made of is told in docs/errors.md, and no other is.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <regex>
#include <set>
#include <sstream>

#include "tests/project/tree.h"

namespace orvane::project {
namespace {

const std::regex kWord("[A-Za-z0-9'_]+");

bool IsQuote(const std::string& sCode, std::size_t n) {
  return sCode[n] == '"' || sCode[n] == '\'';
}

// Behind the literal that begins at n.
std::size_t BehindLiteral(const std::string& sCode, std::size_t n) {
  const char cQuote = sCode[n];
  for (++n; n < sCode.size() && sCode[n] != cQuote && sCode[n] != '\n'; ++n) {
    if (sCode[n] == '\\') ++n;
  }
  return std::min(n + 1, sCode.size());
}

// A mark between digits is no quote.
bool OpensLiteral(const std::string& sCode, std::size_t n) {
  return IsQuote(sCode, n) && !(sCode[n] == '\'' && n > 0 && std::isalnum(sCode[n - 1]) != 0);
}

// The code without its comments and its includes.
std::string Code(const std::filesystem::path& file) {
  std::string sCode;
  for (std::string sLine : Lines(file)) {
    if (sLine.starts_with("#")) continue;
    for (std::size_t n = 0; n < sLine.size();) {
      if (OpensLiteral(sLine, n)) {
        n = BehindLiteral(sLine, n);
      } else if (sLine.compare(n, 2, "//") == 0) {
        sLine.resize(n);
      } else {
        ++n;
      }
    }
    sCode += sLine + '\n';
  }
  return sCode;
}

// What stands between the bracket at n and the one that closes it.
std::string InBrackets(const std::string& sCode, std::size_t n) {
  const std::size_t begin = n;
  for (int nDepth = 0; n < sCode.size();) {
    if (OpensLiteral(sCode, n)) {
      n = BehindLiteral(sCode, n);
      continue;
    }
    if (sCode[n] == '(' || sCode[n] == '{') ++nDepth;
    if ((sCode[n] == ')' || sCode[n] == '}') && --nDepth == 0) break;
    ++n;
  }
  return sCode.substr(begin, n - begin);
}

// The literals in the code, those that stand side by side as one.
std::vector<std::string> Literals(const std::string& sCode) {
  std::vector<std::string> sLiterals;
  std::size_t behind = std::string::npos;
  for (std::size_t n = 0; n < sCode.size();) {
    if (!OpensLiteral(sCode, n)) {
      ++n;
      continue;
    }
    const std::size_t end = BehindLiteral(sCode, n);
    if (sCode[n] == '"') {
      const bool bGoesOn = behind != std::string::npos &&
                           sCode.find_first_not_of(" \n", behind) == n && !sLiterals.empty();
      if (!bGoesOn) sLiterals.emplace_back();
      sLiterals.back() += sCode.substr(n + 1, end - n - 2);
      behind = end;
    }
    n = end;
  }
  return sLiterals;
}

// Text as it is compared: no marks of emphasis, one blank for any number of them.
std::string Normalised(const std::string& sText) {
  std::string sResult;
  for (const char c : sText) {
    if (c == '*' || c == '\\' || c == '`') continue;
    if (std::isspace(static_cast<unsigned char>(c)) == 0) {
      sResult += c;
    } else if (!sResult.ends_with(' ')) {
      sResult += ' ';
    }
  }
  return sResult;
}

// The fixed words of a literal: what lies between its places for values, where that is at least
// three words, without the signs at either end.
std::vector<std::string> FixedWords(const std::string& sLiteral) {
  static const std::regex kPlace(R"re(\{[^}]*\}|\\[nrt])re");
  std::vector<std::string> sFixed;
  for (std::sregex_token_iterator it(sLiteral.begin(), sLiteral.end(), kPlace, -1), end; it != end;
       ++it) {
    const std::string sText = Normalised(it->str());
    const auto nWords = std::distance(std::sregex_iterator(sText.begin(), sText.end(), kWord),
                                      std::sregex_iterator());
    if (nWords < 3) continue;
    static constexpr const char* kSigns = " .,;:()\"";
    const std::size_t first = sText.find_first_not_of(kSigns);
    sFixed.push_back(sText.substr(first, sText.find_last_not_of(kSigns) - first + 1));
  }
  return sFixed;
}

// Where a failure is made: its constructor, what returns one, and what does not return.
std::regex Makers(const std::map<std::filesystem::path, std::string>& sources) {
  static const std::regex kMaker(R"re(\[\[noreturn\]\]\s+(?:static\s+)?void\s+(?:\w+::)*(\w+)\(|)re"
                                 R"re(\bFailure\s+(\w+)\(|\bText\s+(SentenceOf)\()re"
                                 R"re(|\bauto (\w+) = \[[^\]]*\]\([^)]*\)\s*\{\s*throw\b)re");
  std::set<std::string> names = {"Failure"};
  for (const auto& [file, sCode] : sources) {
    for (std::sregex_iterator it(sCode.begin(), sCode.end(), kMaker), end; it != end; ++it) {
      for (std::size_t n = 1; n < it->size(); ++n) {
        if ((*it)[n].matched) names.insert((*it)[n]);
      }
    }
  }
  std::string sNames;
  for (const auto& sName : names) sNames += (sNames.empty() ? "" : "|") + sName;
  return std::regex("\\b(" + sNames + ")\\s*([({])");
}

TEST(ErrorsTest, every_sentence_of_a_failure_is_told_in_the_documents) {
  const std::string sTold = Normalised(Content(Root() / "docs/errors.md"));
  std::map<std::filesystem::path, std::string> sources;
  for (const auto& file : Files({"src"}, {".h", ".cpp"})) sources[file] = Code(file);
  const std::regex makers = Makers(sources);
  std::size_t nFound = 0;
  for (const auto& [file, sCode] : sources) {
    for (std::sregex_iterator it(sCode.begin(), sCode.end(), makers), end; it != end; ++it) {
      std::size_t bracket = static_cast<std::size_t>(it->position(2));
      std::string sMaking = InBrackets(sCode, bracket);
      // The sentences of this one stand in its body.
      if ((*it)[1] == "SentenceOf") {
        bracket = sCode.find_first_of("{;", bracket + sMaking.size());
        if (bracket != std::string::npos && sCode[bracket] == '{') {
          sMaking = InBrackets(sCode, bracket);
        }
      }
      for (const auto& sLiteral : Literals(sMaking)) {
        for (const auto& sFixed : FixedWords(sLiteral)) {
          ++nFound;
          EXPECT_TRUE(sTold.find(sFixed) != std::string::npos)
              << "docs/errors.md does not have \"" << sFixed << "\", which " << Said(file)
              << " says";
        }
      }
    }
  }
  EXPECT_GT(nFound, 250U);
}

// What a list item or the cell of a table tells, without the line breaks.
std::vector<std::string> ToldItems() {
  std::vector<std::string> sItems;
  bool bTable = false;
  bool bInItem = false;
  for (const auto& sLine : Lines(Root() / "docs/errors.md")) {
    const bool bRow = sLine.starts_with("|");
    if (bRow && bTable) {
      std::istringstream row(sLine);
      for (std::string sCell; std::getline(row, sCell, '|');) sItems.push_back(sCell);
    } else if (sLine.starts_with("- ")) {
      sItems.push_back(sLine.substr(2));
    } else if (bInItem && sLine.starts_with("  ")) {
      sItems.back() += sLine.substr(1);
    }
    bTable = sLine.starts_with("|---") || (bTable && bRow);
    bInItem = sLine.starts_with("- ") || (bInItem && sLine.starts_with("  "));
  }
  return sItems;
}

// What the program says of an item: the fixed words of its parts between italics, each clause on
// its own, as the program puts clauses together. What the document says itself about a sentence
// begins with one of a few words.
std::vector<std::string> ToldWords(std::string sItem) {
  static const std::regex kStar(R"re(\\\*)re");
  static const std::regex kClause("[.:;]\"? ");
  static const std::regex kOwn(
      "\\s*(Why is|The problem is|The step is|When there is|With several|It may also)\\b.*");
  sItem = std::regex_replace(sItem, kStar, "");
  std::vector<std::string> sWords;
  bool bFixed = true;
  std::istringstream parts(sItem);
  for (std::string sPart; std::getline(parts, sPart, '*'); bFixed = !bFixed) {
    if (!bFixed) continue;
    for (std::sregex_token_iterator it(sPart.begin(), sPart.end(), kClause, -1), end; it != end;
         ++it) {
      if (std::regex_match(it->str(), kOwn)) continue;
      for (const auto& sFixed : FixedWords(it->str())) sWords.push_back(sFixed);
    }
  }
  return sWords;
}

TEST(ErrorsTest, every_sentence_that_the_documents_tell_is_said) {
  std::string sSaid;
  for (const auto& file : Files({"src"}, {".h", ".cpp"})) {
    for (const auto& sLiteral : Literals(Code(file))) sSaid += Normalised(sLiteral) + '\n';
  }
  std::size_t nFound = 0;
  for (const auto& sItem : ToldItems()) {
    for (const auto& sWords : ToldWords(sItem)) {
      ++nFound;
      EXPECT_TRUE(sSaid.find(sWords) != std::string::npos)
          << "docs/errors.md tells \"" << sWords << "\", which nothing in src says";
    }
  }
  EXPECT_GT(nFound, 400U);
}

TEST(ErrorsTest, told_words_are_found_between_italics_and_clauses) {
  using Texts = std::vector<std::string>;
  EXPECT_EQ(ToldWords("The file *path* is not there any more; \"look\" for it. Why is one of: "
                      "it was eaten up."),
            (Texts{"is not there any more", "look\" for it", "it was eaten up"}));
  EXPECT_EQ(ToldWords("end a comment with \\*/"), (Texts{"end a comment with /"}));
}

TEST(ErrorsTest, fixed_words_are_found_between_the_places_for_values) {
  using Texts = std::vector<std::string>;
  EXPECT_EQ(Literals("f(\"The file \"\n  \"is \\\"gone\\\"\" + s + \"; look.\", 'x', \"y\")"),
            (Texts{"The file is \\\"gone\\\"", "; look.", "y"}));
  EXPECT_EQ(FixedWords("{} cannot be opened: {}."), (Texts{"cannot be opened"}));
  EXPECT_EQ(FixedWords("; end it  with */."), (Texts{"end it with /"}));
  EXPECT_EQ(FixedWords("two words"), Texts{});
  EXPECT_EQ(InBrackets("f(a, \")\", (b)) c", 1), "(a, \")\", (b)");
}

}  // namespace
}  // namespace orvane::project
