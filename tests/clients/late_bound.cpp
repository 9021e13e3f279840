// A client outside of the project that binds late: it sees the registration and the automation
// interfaces alone.

#include <cstdio>
#include <exception>

#include "base/com_error.h"
#include "client/late_call.h"

namespace {

using sab::client::Value;

Value Create(const OLECHAR* prog_id) {
  CLSID clsid;
  sab::ComPtr<IDispatch> object;
  sab::Check(CLSIDFromProgID(prog_id, &clsid), "CLSIDFromProgID");
  sab::Check(
      CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, object.PutVoid()),
      "CoCreateInstance");
  return Value::Of(object.Get());
}

void UseList() {
  const Value list = Create(OLESTR("SabXmlParser.VePrsAccelColl"));
  const Value accel = Create(OLESTR("SabXmlParser.VePrsAccel"));
  sab::client::Put(*accel.Get().pdispVal, "key", Value("F7"));
  sab::client::Call(*list.Get().pdispVal, "AddTail", DISPATCH_METHOD, {accel});
  const Value head = sab::client::Call(*list.Get().pdispVal, "GetHead", DISPATCH_METHOD);
  if (sab::client::Get(*head.Get().pdispVal, "Key").Text() != "F7")
    throw sab::ComError(E_FAIL, "the key is another");
}

}  // namespace

int main() try {
  sab::Check(CoInitialize(nullptr), "CoInitialize");
  UseList();
  CoFreeUnusedLibraries();
  CoUninitialize();
  return 0;
} catch (const std::exception& error) {
  std::printf("failed: %s\n", error.what());
  return 1;
}
