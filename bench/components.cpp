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

// The first object of a process, with the library that is loaded for it; only the first row of a
// process that creates anything measures that.
void FirstObject(benchmark::State& state) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(sab::bench::Created<IVeUiParser>(CLSID_VeUiParser).Get());
  }
}
BENCHMARK(FirstObject)->Iterations(1)->Unit(benchmark::kMicrosecond);

// As a client does; the runtime knows the class from the second call on.
void CreateInstance(benchmark::State& state) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(sab::bench::Created<IVePrsAccel>(CLSID_VePrsAccel).Get());
  }
}
BENCHMARK(CreateInstance);

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

ComPtr<IVePrsAccelColl> MakeCollection(std::size_t count) {
  ComPtr<IVePrsAccelColl> collection;
  sab::bench::FactoryOf(CLSID_VePrsAccelColl)
      ->CreateInstance(nullptr, IID_IVePrsAccelColl, collection.PutVoid());
  for (const auto& accel : MakeAccels(count)) collection->AddTail(accel.Get(), nullptr);
  return collection;
}

// As scripts walk a list: For Each, and by index.
void CollectionForEach(benchmark::State& state) {
  const auto collection = MakeCollection(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    DISPPARAMS none{};
    VARIANT walk{};
    collection->Invoke(DISPID_NEWENUM, IID_NULL, 0, DISPATCH_METHOD, &none, &walk, nullptr,
                       nullptr);
    auto* const elements = static_cast<IEnumVARIANT*>(walk.punkVal);
    VARIANT element{};
    while (elements->Next(1, &element, nullptr) == S_OK) VariantClear(&element);
    VariantClear(&walk);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(CollectionForEach)->Arg(10000)->Arg(80000);

void CollectionByIndex(benchmark::State& state) {
  const auto count = static_cast<ULONG_PTR>(state.range(0));
  const auto collection = MakeCollection(count);
  for (auto _ : state) {
    for (ULONG_PTR i = 0; i < count; ++i) {
      LONG_PTR position = 0;
      collection->FindIndex(i, &position);
      ComPtr<IVePrsAccel> accel;
      collection->GetAt(position, accel.Put());
      benchmark::DoNotOptimize(accel.Get());
    }
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(CollectionByIndex)->Arg(10000)->Arg(80000);

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
