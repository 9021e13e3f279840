// A program that is not linked with the library opens and closes it.
//
//   open_and_close LIBRARY CYCLES

#include <dlfcn.h>
#include <pthread.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <thread>
#include <vector>

namespace {

void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "failed: %s\n", what);
  std::exit(1);
}

// A library whose strings are taken from the memory of the thread.
class Library {
 public:
  explicit Library(const char* path) : handle_(dlopen(path, RTLD_NOW | RTLD_LOCAL)) {
    Require(handle_, "the library is opened");
  }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;
  ~Library() { dlclose(handle_); }

  bool CanMakeString() const {
    const auto allocate =
        reinterpret_cast<char16_t* (*)(const char16_t*)>(dlsym(handle_, "SysAllocString"));
    const auto free = reinterpret_cast<void (*)(char16_t*)>(dlsym(handle_, "SysFreeString"));
    char16_t* const string = allocate(u"text");
    free(string);
    return string != nullptr;
  }

 private:
  void* handle_;
};

// A process may have no key left that tells of the end of a thread.
void UseWithoutKeys(const char* path) {
  const Library library(path);
  std::vector<pthread_key_t> keys;
  for (pthread_key_t key{}; pthread_key_create(&key, nullptr) == 0;) keys.push_back(key);
  for (const pthread_key_t& key : keys) pthread_setspecific(key, &key);
  Require(!library.CanMakeString(), "without a key there is no memory");
  for (const pthread_key_t& key : keys) {
    Require(pthread_getspecific(key) == &key, "the keys of others keep their values");
    pthread_key_delete(key);
  }
  Require(library.CanMakeString(), "with a key there is memory again");
}

void UseOnThreadThatOutlivesTheLibrary(const char* path) {
  pthread_barrier_t step;
  pthread_barrier_init(&step, nullptr, 2);
  auto library = std::make_unique<Library>(path);
  std::thread user([&] {
    Require(library->CanMakeString(), "a thread makes a string");
    pthread_barrier_wait(&step);
    pthread_barrier_wait(&step);
  });
  pthread_barrier_wait(&step);
  library.reset();
  pthread_barrier_wait(&step);
  user.join();
}

unsigned long PagesOfAddressSpace() {
  unsigned long pages = 0;
  std::ifstream("/proc/self/statm") >> pages;
  return pages;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  UseWithoutKeys(argv[1]);
  UseOnThreadThatOutlivesTheLibrary(argv[1]);
  const int cycles = std::atoi(argv[2]);
  const unsigned long before = PagesOfAddressSpace();
  for (int i = 0; i < cycles; ++i) Require(Library(argv[1]).CanMakeString(), "a string is made");
  const unsigned long left = PagesOfAddressSpace() - before;
  std::printf("counted: %d times opened and closed, %lu pages of address space left\n", cycles,
              left);
  Require(left < 4096, "no address space is left behind");
}
