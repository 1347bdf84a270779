// The small file in which one class of a component is registered: its name and its content.
// Used by the registry, which reads such files, and by the registrar, which writes them.
// Pure functions, callable from any thread.
#pragma once

#include <filesystem>
#include <string_view>

#include "platform/component.h"

namespace orvane::component {

/// A class and the library that makes its objects.
struct RegisteredClass {
  platform::ComponentDescription description;
  std::filesystem::path library;
};

/// The name of the file for a progid, whatever bytes and however many of them the progid has:
/// case is folded, since progids are the same in any case, and what a file name should not
/// contain is written as "%" and two hex digits.
platform::Text ClassFileName(std::string_view sProgId);

/// The content of the file. Fails with kComponent when there is no progid or a text is not UTF-8.
platform::Text WriteClassFile(const RegisteredClass& registered);

/// Reads the content of the file; a relative library path starts at the file's folder. Fails with
/// kComponent, naming the file, when the content is damaged or written by a newer program.
RegisteredClass ReadClassFile(std::string_view sContent, const std::filesystem::path& file);

}  // namespace orvane::component
