// Query and identity comparison of interface pointers.
#include "query.h"

bool SameObject(IUnknown* a, IUnknown* b) {
  if (!a || !b) return a == b;
  SmartPtr<IUnknown> identityA = QueryAs<IUnknown>(a);
  SmartPtr<IUnknown> identityB = QueryAs<IUnknown>(b);
  return identityA.get() == identityB.get();
}

HRESULT Query(IUnknown* object, IID iid, void** out) {
  if (!object) return E_NOINTERFACE;
  if (object->QueryInterface(iid, out) >= 0) return S_OK;

  SmartPtr<ICollectionMoniker> moniker = QueryAs<ICollectionMoniker>(object);
  if (moniker && moniker->FindObject(&iid, out) >= 0) return S_OK;

  SmartPtr<IHostWindow> host = QueryAs<IHostWindow>(object);
  if (!host && moniker) {
    IID hostIid = IID_IHostWindow;
    moniker->FindObject(&hostIid, host.ReceiveVoid());
  }
  if (!host) return E_NOINTERFACE;

  SmartPtr<IUnknown> hosted;
  if (host->GetHostedObject(hosted.Receive()) < 0 || !hosted) return E_NOINTERFACE;
  return hosted->QueryInterface(iid, out);
}
