#pragma once

#include <string>
#include <vector>

#include "server.h"

namespace sabxml::cli {

/// A kind of file that the server reads as a whole, and the way from it to the next files.
struct DescriptorKind {
  /// Other files that a descriptor names.
  struct Link {
    const char* getter;  ///< gives a path or an array of paths
    const char* root;    ///< kind of those files
  };

  const char* root;  ///< name of its document element
  const char* words;
  const char* class_name;
  /// Method that reads the file: Load is handed the file, the others find it in ConfigurationPath.
  const char* generate;
  std::vector<Link> links;
};

/// The kind whose document element has this name. Raises std::out_of_range.
const DescriptorKind& DescriptorKindOf(const std::string& root);

/// The kind of a file. Raises Failure for a file that cannot be read or is of no known kind.
const DescriptorKind& RecogniseDescriptor(const std::string& file);

/// Loads a descriptor through the server. Raises Failure with file, line, column and reason.
Reference<IDispatch> LoadDescriptor(Server& server, const DescriptorKind& kind,
                                    const std::string& file);
}  // namespace sabxml::cli
