# Tests of the dialect, the historian store, sessions and schema rowsets.
