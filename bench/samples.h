#pragma once

#include <cstddef>
#include <string>

namespace sab::bench {

/// A user-interface file of about so many bytes: ribbon tabs, panels and buttons with their values,
/// a fifth of the texts in Chinese, two spaces of indentation a level.
const std::string& UserInterfaceFile(std::size_t bytes);

/// A settings file: blocks of 40 values each, of about 20 KB at one block with its neighbours.
const std::string& SettingsFile();
/// The keys of the block that is read.
inline constexpr int kKeys = 39;
std::string KeyName(int number);

/// The XPath of the element that holds the keys.
inline constexpr char kNodePath[] = "/Settings/Display";

/// Writes a sample to the temporary folder and gives its name.
std::string WriteSample(const std::string& name, const std::string& content);

}  // namespace sab::bench
