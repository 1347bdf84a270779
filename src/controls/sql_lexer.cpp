#include "controls/sql_lexer.h"

namespace orvane::controls {

const char* SqlLexer::keywords(int nSet) const {
  if (nSet != 1) return nullptr;
  return "all alter and as asc between by case cast collate create cross current_date current_time "
         "current_timestamp database default delete desc distinct drop else end escape except "
         "exists false from full group having in inner insert intersect into is join left like "
         "limit natural not null offset on or order outer over partition path recursive right "
         "select set size table then true union unique update using values view when where with";
}

}  // namespace orvane::controls
