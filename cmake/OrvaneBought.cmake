# What is bought, not made. Every name here has a line in docs/architecture.md.
find_package(Qt6 6.4 REQUIRED COMPONENTS Widgets Svg PrintSupport Test)
find_package(SQLite3 REQUIRED)
find_package(date REQUIRED)
find_package(spdlog REQUIRED)
find_package(fmt REQUIRED)
find_package(CLI11 REQUIRED)
find_package(nlohmann_json REQUIRED)
find_package(QCustomPlotQt6 REQUIRED)

find_path(QSCINTILLA_INCLUDE_DIR Qsci/qsciscintilla.h PATH_SUFFIXES x86_64-linux-gnu/qt6
  PATHS ${Qt6Core_INCLUDE_DIRS} /usr/include/${CMAKE_LIBRARY_ARCHITECTURE}/qt6 REQUIRED)
find_library(QSCINTILLA_LIBRARY NAMES qscintilla2_qt6 REQUIRED)
add_library(orvane_qscintilla INTERFACE)
add_library(orvane::qscintilla ALIAS orvane_qscintilla)
target_include_directories(orvane_qscintilla SYSTEM INTERFACE ${QSCINTILLA_INCLUDE_DIR})
target_link_libraries(orvane_qscintilla INTERFACE ${QSCINTILLA_LIBRARY} Qt6::Widgets)

find_path(LIBPQ_INCLUDE_DIR libpq-fe.h PATH_SUFFIXES postgresql REQUIRED)
find_library(LIBPQ_LIBRARY NAMES pq REQUIRED)
add_library(orvane_libpq INTERFACE)
add_library(orvane::libpq ALIAS orvane_libpq)
target_include_directories(orvane_libpq SYSTEM INTERFACE ${LIBPQ_INCLUDE_DIR})
target_link_libraries(orvane_libpq INTERFACE ${LIBPQ_LIBRARY})
