// For tools/conformance: reads the files whose names come on the standard input, and says of each
// whether it is accepted.

#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

#include "xml/document.h"
#include "xml/error.h"

int main() {
  for (std::string name; std::getline(std::cin, name);) {
    std::ifstream file(name, std::ios::binary);
    try {
      const sab::xml::Document document(std::string(std::istreambuf_iterator<char>(file), {}));
      std::cout << "accepted\n";
    } catch (const sab::xml::Error& error) {
      std::cout << "refused " << error.Line() << ':' << error.Column() << ' ' << error.what()
                << '\n';
    }
  }
}
