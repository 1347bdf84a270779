// A table of pumps to edit: rows with a key, a text that must be there, a number and a note.
#pragma once

#include "tests/controls/editing_fixture.h"

namespace orvane::controls {

class PumpsFixture : public EditingFixture {
 protected:
  PumpsFixture() {
    m_server->Run(
        "CREATE TABLE P..Pumps (Id INTEGER PRIMARY KEY, Name TEXT NOT NULL, Flow REAL, Note TEXT)");
    m_server->Run(
        "INSERT INTO P..Pumps VALUES (1, 'feed', 10.5, 'old'), (2, 'drain', 3.25, NULL), "
        "(3, 'spare', 0, '')");
  }
  platform::Text Pumps() { return Stored("SELECT * FROM P..Pumps ORDER BY Id"); }
};

}  // namespace orvane::controls
