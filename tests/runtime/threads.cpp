// Threads that create objects of a registered library, use them, and unload the library whenever it
// can be. Strings pass from thread to thread, and threads end while others hold theirs.
//
//   threads LIBRARY ROUNDS

#include <SabXmlParser.h>
#include <dlfcn.h>
#include <link.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "failed: %s\n", what);
  std::abort();
}

template <class Interface>
struct Held {
  Interface* object = nullptr;
  ~Held() {
    if (object) object->Release();
  }
  void** Put() { return reinterpret_cast<void**>(&object); }
};

// Strings that one thread makes and another frees.
class Exchange {
 public:
  ~Exchange() {
    for (const BSTR string : strings_) SysFreeString(string);
  }
  void Pass(BSTR string, unsigned place) {
    {
      const std::lock_guard lock(mutex_);
      if (strings_.size() < 500) return strings_.push_back(string);
      std::swap(string, strings_[place % strings_.size()]);
    }
    const UINT length = SysStringLen(string);
    const std::basic_string<OLECHAR> text(length, static_cast<OLECHAR>(length));
    Require(length > 0 && text == string, "a string of another thread is whole");
    SysFreeString(string);
  }

 private:
  std::mutex mutex_;
  std::vector<BSTR> strings_;
};

Exchange strings;
std::atomic<long> objects{0};

void UseObjects(unsigned seed) {
  Held<IVePrsAccelColl> list;
  Require(CoCreateInstance(CLSID_VePrsAccelColl, nullptr, CLSCTX_INPROC_SERVER, IID_IVePrsAccelColl,
                           list.Put()) == S_OK,
          "a list is created");
  for (unsigned i = 0; i < 20; ++i) {
    Held<IVePrsAccel> accel;
    Require(CoCreateInstance(CLSID_VePrsAccel, nullptr, CLSCTX_INPROC_SERVER, IID_IVePrsAccel,
                             accel.Put()) == S_OK,
            "an element is created");
    const UINT length = 1 + (seed + i) % 250;
    const std::basic_string<OLECHAR> text(length, static_cast<OLECHAR>(length));
    const BSTR key = SysAllocStringLen(text.c_str(), length);
    Require(
        accel.object->put_Key(key) == S_OK && list.object->AddTail(accel.object, nullptr) == S_OK,
        "an element is added");
    strings.Pass(key, seed + i);
    ++objects;
  }
  Held<ITypeInfo> info;
  Require(list.object->GetTypeInfo(0, 0, &info.object) == S_OK, "type information is created");
  Require(FAILED(list.object->GetAt(12345, nullptr)), "a wrong call fails and leaves its error");
}

void Work(unsigned seed, int rounds) {
  std::mt19937 random(seed);
  for (int round = 0; round < rounds; ++round) {
    CoInitialize(nullptr);
    UseObjects(static_cast<unsigned>(random()));
    if (round % 2 == 0) CoFreeUnusedLibraries();
    CoUninitialize();
    CoFreeUnusedLibraries();
  }
}

// How many libraries the process has unloaded.
unsigned long long CountUnloads() {
  unsigned long long count = 0;
  dl_iterate_phdr(
      [](dl_phdr_info* first, std::size_t, void* result) {
        *static_cast<unsigned long long*>(result) = first->dlpi_subs;
        return 1;
      },
      &count);
  return count;
}

void Register(const char* path, const char* function) {
  void* const library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
  Require(library, "the library is opened");
  const auto entry = reinterpret_cast<HRESULT (*)()>(dlsym(library, function));
  Require(entry && entry() == S_OK, function);
  dlclose(library);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  constexpr unsigned kThreads = 4;
  constexpr unsigned kGenerations = 3;
  Register(argv[1], "DllRegisterServer");
  for (unsigned generation = 0; generation < kGenerations; ++generation) {
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < kThreads; ++i) {
      threads.emplace_back(Work, generation * kThreads + i, std::atoi(argv[2]));
    }
    for (std::thread& thread : threads) thread.join();
  }
  CoFreeUnusedLibraries();
  Require(!dlopen(argv[1], RTLD_NOW | RTLD_NOLOAD), "the library is unloaded at the end");
  const unsigned long long unloads = CountUnloads();
  Register(argv[1], "DllUnregisterServer");
  std::printf("counted: %ld objects on %u threads at a time, %llu times unloaded\n", objects.load(),
              kThreads, unloads);
  Require(unloads > 1, "the library is unloaded between the threads' uses");
}
