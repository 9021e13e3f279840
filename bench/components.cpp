// What objects and collections cost, through the interfaces that a host uses. The list of interface
// pointers is what one would write without the server.

#include <SabXmlParser.h>
#include <benchmark/benchmark.h>

#include <list>
#include <vector>

#include "base/com_ptr.h"
#include "server_fixture.h"

namespace {

using sab::ComPtr;

void CreateAndRelease(benchmark::State& state) {
  const ComPtr<IClassFactory> factory = sab::bench::FactoryOf(CLSID_VePrsAccel);
  for (auto _ : state) {
    ComPtr<IVePrsAccel> accel;
    factory->CreateInstance(nullptr, IID_IVePrsAccel, accel.PutVoid());
    benchmark::DoNotOptimize(accel.Get());
  }
}
BENCHMARK(CreateAndRelease);

std::vector<ComPtr<IVePrsAccel>> MakeAccels(std::size_t count) {
  const ComPtr<IClassFactory> factory = sab::bench::FactoryOf(CLSID_VePrsAccel);
  std::vector<ComPtr<IVePrsAccel>> accels(count);
  for (auto& accel : accels) {
    factory->CreateInstance(nullptr, IID_IVePrsAccel, accel.PutVoid());
  }
  return accels;
}

void CollectionAppendAndWalk(benchmark::State& state) {
  const auto accels = MakeAccels(static_cast<std::size_t>(state.range(0)));
  const ComPtr<IClassFactory> factory = sab::bench::FactoryOf(CLSID_VePrsAccelColl);
  for (auto _ : state) {
    ComPtr<IVePrsAccelColl> collection;
    factory->CreateInstance(nullptr, IID_IVePrsAccelColl, collection.PutVoid());
    for (const auto& accel : accels) collection->AddTail(accel.Get(), nullptr);
    LONG_PTR position = 0;
    collection->GetHeadPosition(&position);
    while (position) {
      ComPtr<IVePrsAccel> accel;
      collection->GetNext(&position, accel.Put());
      benchmark::DoNotOptimize(accel.Get());
    }
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(CollectionAppendAndWalk)->Arg(10)->Arg(10000);

void ListOfPointersAppendAndWalk(benchmark::State& state) {
  const auto accels = MakeAccels(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    std::list<ComPtr<IVePrsAccel>> list;
    for (const auto& accel : accels) list.push_back(accel);
    for (const auto& item : list) {
      const ComPtr<IVePrsAccel> accel = item;
      benchmark::DoNotOptimize(accel.Get());
    }
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(ListOfPointersAppendAndWalk)->Arg(10)->Arg(10000);

}  // namespace
