# Tests of the window.
