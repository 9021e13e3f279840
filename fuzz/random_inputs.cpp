// Runs a fuzzing target as a test, without libFuzzer: on its first inputs and on many that are made
// of them at random, the same ones each time.
//
//   sab_inputs_NAME ROUNDS FOLDER
//
// An input that fails is left in the file failed_input.

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <system_error>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
extern "C" __attribute__((weak)) int LLVMFuzzerInitialize(int*, char***);

namespace {

std::mt19937 generator(4711);
std::string input;

std::size_t Below(std::size_t bound) { return generator() % bound; }

std::string RandomBytes() {
  std::string bytes(Below(1024), '\0');
  for (char& byte : bytes) byte = static_cast<char>(Below(256));
  return bytes;
}

void Damage(const std::string& other) {
  const std::size_t at = Below(input.size() + 1);
  switch (Below(5)) {
    case 0:
      input.erase(at, Below(6) + 1);
      break;
    case 1:
      input.replace(at, 1, 1, static_cast<char>(Below(256)));
      break;
    case 2:
      input.insert(at, RandomBytes());
      break;
    default:
      input.insert(at, other, Below(other.size() + 1), Below(12));
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3 || (LLVMFuzzerInitialize && LLVMFuzzerInitialize(&argc, &argv) != 0)) return 2;
  std::signal(SIGABRT, [](int) { std::ofstream("failed_input", std::ios::binary) << input; });
  std::vector<std::string> first(1);
  std::error_code none;  // where a target has no first inputs
  for (const auto& entry : std::filesystem::directory_iterator(argv[2], none)) {
    std::ifstream file(entry.path(), std::ios::binary);
    first.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  }
  std::sort(first.begin(), first.end());
  for (int round = std::stoi(argv[1]); round > 0; --round) {
    input = first[Below(first.size())];
    for (std::size_t i = Below(4); i > 0; --i) Damage(first[Below(first.size())]);
    if (input.empty()) input = RandomBytes();
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
  }
}
