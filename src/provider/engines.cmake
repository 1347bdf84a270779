# The engines that the provider stands on.
list(APPEND PROVIDER_SOURCES)
