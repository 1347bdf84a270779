# The program orvane-console. Its version resource is what the snap-in reads as its console's.
add_executable(orvane-console app/main.cpp)
target_link_libraries(orvane-console PRIVATE orvane_console)
target_compile_definitions(orvane-console PRIVATE ORVANE_VERSION="${PROJECT_VERSION}")
orvane_version_resource(orvane-console ${PROJECT_VERSION})
