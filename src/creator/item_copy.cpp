// Copying items between collections by name.
#include "creator/item_copy.h"

#include "strings/ref_string.h"

CopySource::CopySource(INamedCollection* source)
    : collection(source), parameters(QueryAs<IParameters>(source)), super(QueryAs<ISuperCollection>(source)) {}

SmartPtr<IVariant> CopyOfValue(IVariant* value) {
  SmartPtr<IVariant> copy = SmartPtr<IVariant>::Adopt(CREFString::CreateVariant());
  if (copy && value) copy->Assign(value);
  return copy;
}

CopiedItem ReadItemForCopy(const CopySource& source, int32_t index) {
  CopiedItem item;
  source.collection->get_ItemName(index, item.name.Receive());
  if (source.parameters) {
    SmartPtr<IVariant> value;
    source.parameters->get_ItemVariant(index, value.Receive());
    item.object = SmartPtr<IUnknown>(CopyOfValue(value.get()).get());
    source.parameters->get_ItemDescriptor(index, item.descriptor.Receive());
    source.parameters->get_ItemFlags(index, &item.flags);
  } else {
    source.collection->get_Item(index, item.object.Receive());
    if (source.super) {
      source.super->get_ItemAttached(index, item.descriptor.Receive());
      source.super->get_ItemFlags(index, &item.flags);
    }
  }
  item.flags &= ~kParameterNotStored;
  return item;
}

void StoreByName(IParametersCreatable* target, const CopiedItem& item) {
  int32_t index = -1;
  if (item.name && SUCCEEDED(target->get_Index(item.name.get(), &index))) {
    target->put_Item(index, item.object.get());
    target->put_ItemFlags(index, item.flags);
    target->put_ItemDescriptor(index, item.descriptor.get());
    return;
  }
  target->Add(item.name.get(), item.object.get(), item.descriptor.get(), item.flags);
}
