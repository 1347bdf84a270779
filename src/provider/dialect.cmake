# The dialect, the historian store, sessions and schema rowsets.
list(APPEND PROVIDER_SOURCES)
