# Tests of the engines, on real database files.
