// A console document as the file holds it, read without the program's own reader.
#pragma once

#include <filesystem>
#include <map>
#include <string>

namespace orvane::console {

/// What the snap-in keeps: names and values, each value written as JSON. An object is its class
/// and its state, "ORVOLEDBCtls.TableQuery" and the state's own JSON behind it.
std::map<std::string, std::string> ReadSavedProperties(const std::filesystem::path& file);

}  // namespace orvane::console
