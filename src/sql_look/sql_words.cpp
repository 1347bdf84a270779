#include "sql_look/sql_words.h"

namespace orvane::sql_look {

namespace {

struct Colors {
  QColor keyword;
  QColor number;
  QColor text;
  QColor name;
  QColor comment;
};

Colors ColorsFor(const QPalette& palette) {
  if (palette.color(QPalette::Base).lightness() >= 128) {
    return {QColor(0x0b, 0x53, 0x94), QColor(0x8a, 0x45, 0x00), QColor(0x1c, 0x6b, 0x2a),
            QColor(0x6a, 0x2f, 0x7a), QColor(0x66, 0x66, 0x66)};
  }
  return {QColor(0x7f, 0xb4, 0xe8), QColor(0xe0, 0xa8, 0x6a), QColor(0x8f, 0xcf, 0x8f),
          QColor(0xcf, 0xa0, 0xdc), QColor(0xa0, 0xa0, 0xa0)};
}

}  // namespace

const char* SqlWords::keywords(int iSet) const {
  if (iSet != 1) return nullptr;
  return "add all alter and any as asc avg begin between by case cast check coalesce collate "
         "commit constraint count create cross current_date current_time current_timestamp "
         "database "
         "default delete desc distinct drop else end escape except exists explain false fetch "
         "first "
         "foreign from full group having in index inner insert intersect into is join key last "
         "left "
         "like limit max min natural not null nulls offset on only or order outer over partition "
         "path primary recursive references right rollback row rows select set size some sum table "
         "then top transaction true union unique update using values view when where with";
}

void SqlWords::Paint(const QPalette& palette, const QFont& font, const QColor& plain) {
  const QColor paper = palette.color(QPalette::Base);
  const QColor ink = plain.isValid() ? plain : palette.color(QPalette::Text);
  setDefaultFont(font);
  setDefaultPaper(paper);
  setDefaultColor(ink);
  setFont(font);
  setPaper(paper);
  setColor(ink);
  if (plain.isValid()) return;
  const Colors set = ColorsFor(palette);
  setColor(set.keyword, Keyword);
  setColor(set.number, Number);
  setColor(set.text, SingleQuotedString);
  for (const int iStyle : {DoubleQuotedString, QuotedIdentifier}) setColor(set.name, iStyle);
  for (const int iStyle : {Comment, CommentLine, CommentDoc, CommentLineHash}) {
    setColor(set.comment, iStyle);
  }
  QFont keywordFont = font;
  keywordFont.setBold(true);
  setFont(keywordFont, Keyword);
}

}  // namespace orvane::sql_look
