// The exception boundary of every creatable object: GuardedObject<T>, the
// most-derived class that CObject<T>::_CreateInstance makes, overrides every
// operation of every interface below that T implements and runs T's own
// implementation through GuardedCall. An exception escaping T's code becomes
// 0x8007000E (out of memory) or 0x80004005 instead of crossing the interface,
// so a class gets the boundary by implementing the interface, without a try
// in any of its bodies.
//
// The overrides replace T's entries in place: every table keeps its slot
// order. A class that implements an interface not listed here must add an
// InterfaceGuard for it (the operations of the interface itself, not of its
// bases) and list it in GuardedObject.
#pragma once

#include <type_traits>

#include "boundary.h"
#include "params.h"

template <class I, class Base>
struct InterfaceGuard;

// Calls the guarded class's own implementation, named through the class
// itself so that the guards of other interfaces never hide its overloads.
#define GUARDED_OPERATION(name, params, args)                                   \
  HRESULT name params noexcept override {                                       \
    using Class = typename Base::GuardedClass;                                  \
    return GuardedCall([&] { return static_cast<Class*>(this)->Class::name args; }); \
  }

template <class Base>
struct InterfaceGuard<ISimpleCollection, Base> : Base {
  GUARDED_OPERATION(get_Count, (int32_t * count), (count))
  GUARDED_OPERATION(get_Item, (int32_t index, IUnknown** item), (index, item))
};

template <class Base>
struct InterfaceGuard<INamedCollection, Base> : Base {
  GUARDED_OPERATION(get_Index, (IUnknown * key, int32_t* index), (key, index))
  GUARDED_OPERATION(get_ItemName, (int32_t index, IString** name), (index, name))
  GUARDED_OPERATION(Rename, (int32_t index, IString* name), (index, name))
  GUARDED_OPERATION(CollectionLock, (), ())
  GUARDED_OPERATION(CollectionUnlock, (), ())
  GUARDED_OPERATION(IsCollectionLocked, (), ())
};

template <class Base>
struct InterfaceGuard<ISuperCollection, Base> : Base {
  GUARDED_OPERATION(get_ItemAttached, (int32_t index, IUnknown** attached), (index, attached))
  GUARDED_OPERATION(put_ItemAttached, (int32_t index, IUnknown* attached), (index, attached))
  GUARDED_OPERATION(get_ItemFlags, (int32_t index, int32_t* flags), (index, flags))
  GUARDED_OPERATION(put_ItemFlags, (int32_t index, int32_t flags), (index, flags))
  GUARDED_OPERATION(put_Item, (int32_t index, IUnknown* object), (index, object))
  GUARDED_OPERATION(Add, (IString * name, IUnknown* object, IUnknown* attached, int32_t flags),
                    (name, object, attached, flags))
  GUARDED_OPERATION(Insert, (int32_t index, IString* name, IUnknown* object, IUnknown* attached, int32_t flags),
                    (index, name, object, attached, flags))
  GUARDED_OPERATION(Remove, (int32_t index), (index))
  GUARDED_OPERATION(Query, (const IID& iid, int32_t nth, int16_t useAttached, int32_t* index),
                    (iid, nth, useAttached, index))
  GUARDED_OPERATION(Clear, (), ())
  GUARDED_OPERATION(Sort, (int32_t flags, void* compare), (flags, compare))
  GUARDED_OPERATION(cLock, (), ())
  GUARDED_OPERATION(cUnlock, (), ())
  GUARDED_OPERATION(get_ItemIndex, (IUnknown * object, int32_t* index), (object, index))
  GUARDED_OPERATION(get_IndexAttached, (IUnknown * attached, int32_t* index), (attached, index))
  GUARDED_OPERATION(VerifyInterface, (IUnknown * object, IUnknown** verified), (object, verified))
  GUARDED_OPERATION(CollectionClear, (), ())
  GUARDED_OPERATION(Save, (IDataStream * stream, int32_t flags), (stream, flags))
  GUARDED_OPERATION(Load, (IDataStream * stream, int32_t flags), (stream, flags))
};

template <class Base>
struct InterfaceGuard<IParameters, Base> : Base {
  GUARDED_OPERATION(Iterate, (int32_t index, IString** name, IVariant** value, IUnknown** descriptor, int32_t* flags),
                    (index, name, value, descriptor, flags))
  GUARDED_OPERATION(get_ItemVariant, (int32_t index, IVariant** value), (index, value))
  GUARDED_OPERATION(put_Item, (int32_t index, IUnknown* value), (index, value))
  GUARDED_OPERATION(get_ItemDescriptor, (int32_t index, IUnknown** descriptor), (index, descriptor))
  GUARDED_OPERATION(put_ItemDescriptor, (int32_t index, IUnknown* descriptor), (index, descriptor))
  GUARDED_OPERATION(get_ItemFlags, (int32_t index, int32_t* flags), (index, flags))
  GUARDED_OPERATION(put_ItemFlags, (int32_t index, int32_t flags), (index, flags))
  GUARDED_OPERATION(Add, (IString * name, IUnknown* value, IUnknown* descriptor, int32_t flags),
                    (name, value, descriptor, flags))
  GUARDED_OPERATION(Remove, (int32_t index), (index))
  GUARDED_OPERATION(RemoveAll, (), ())
  GUARDED_OPERATION(Copy, (IParameters * source), (source))
  GUARDED_OPERATION(Sort, (int32_t flags), (flags))
  GUARDED_OPERATION(Set, (IUnknown * key, IUnknown* value, IUnknown* descriptor, int32_t flags, int16_t mode),
                    (key, value, descriptor, flags, mode))
  GUARDED_OPERATION(AddNOLOCK, (IString * name, IUnknown* value, IUnknown* descriptor, int32_t flags),
                    (name, value, descriptor, flags))
  GUARDED_OPERATION(get_ItemNOLOCK, (int32_t index, IUnknown** item), (index, item))
  GUARDED_OPERATION(put_ItemNOLOCK, (int32_t index, IUnknown* value), (index, value))
  GUARDED_OPERATION(get_ItemNameNOLOCK, (int32_t index, IString** name), (index, name))
  GUARDED_OPERATION(Params_SaveCSV, (IDataStream * stream, int32_t flags), (stream, flags))
  GUARDED_OPERATION(Params_SaveXML, (IDataStream * stream, int32_t flags), (stream, flags))
  GUARDED_OPERATION(Params_LoadXML, (IDataStream * stream, int32_t flags, int32_t reserved), (stream, flags, reserved))
  GUARDED_OPERATION(Params_SaveFolderStream, (IDataStream * stream, int32_t flags), (stream, flags))
  GUARDED_OPERATION(Params_LoadFolderStream, (IDataStream * stream, int32_t flags), (stream, flags))
  GUARDED_OPERATION(Params_SaveXMLUnk, (IDataStream * stream, int32_t flags), (stream, flags))
  GUARDED_OPERATION(Params_LoadXMLUnk, (IDataStream * stream, int32_t flags), (stream, flags))
  GUARDED_OPERATION(getParameter, (PARAMETEROBJECT * record, IUnknown** value), (record, value))
};

template <class Base>
struct InterfaceGuard<IExpression, Base> : Base {
  GUARDED_OPERATION(get_Value, (IVariant * *value), (value))
  GUARDED_OPERATION(put_Value, (IVariant * value), (value))
  GUARDED_OPERATION(Evaluate, (IParameters * parameters), (parameters))
  GUARDED_OPERATION(get_Expression, (IString * *text), (text))
  GUARDED_OPERATION(put_Expression, (tagREFString text), (text))
};

template <class Base>
struct InterfaceGuard<IInputParameter, Base> : Base {
  GUARDED_OPERATION(get_Object, (IUnknown * *object), (object))
  GUARDED_OPERATION(get_IID, (IID * iid), (iid))
  GUARDED_OPERATION(put_IID, (IID iid), (iid))
  GUARDED_OPERATION(SetSource, (IUnknown * source, int32_t checkType), (source, checkType))
  GUARDED_OPERATION(get_Name, (IString * *name), (name))
  GUARDED_OPERATION(put_Name, (IString * name), (name))
  GUARDED_OPERATION(get_Source, (IUnknown * *source), (source))
  GUARDED_OPERATION(put_Source, (IUnknown * source), (source))
  GUARDED_OPERATION(get_SourceIndex, (int32_t * index), (index))
  GUARDED_OPERATION(put_SourceIndex, (int32_t index), (index))
  GUARDED_OPERATION(get_AssignmentFlags, (int32_t * flags), (flags))
  GUARDED_OPERATION(put_AssignmentFlags, (int32_t flags), (flags))
};

template <class Base>
struct InterfaceGuard<IInputParameters, Base> : Base {
  GUARDED_OPERATION(Add, (IString * name, IInputParameter* parameter), (name, parameter))
  GUARDED_OPERATION(Create, (IString * name, IID iid, int32_t flags), (name, iid, flags))
  GUARDED_OPERATION(SetInput, (int32_t index, IUnknown* input), (index, input))
  GUARDED_OPERATION(GetInput, (int32_t index, IUnknown** object), (index, object))
  GUARDED_OPERATION(Remove, (int32_t index), (index))
  GUARDED_OPERATION(cLock, (), ())
  GUARDED_OPERATION(cUnlock, (), ())
  GUARDED_OPERATION(get_ItemIndex, (IUnknown * object, int32_t* index), (object, index))
  GUARDED_OPERATION(get_IndexAttached, (IUnknown * attached, int32_t* index), (attached, index))
  GUARDED_OPERATION(get_ItemAttached, (int32_t index, IUnknown** attached), (index, attached))
  GUARDED_OPERATION(put_ItemAttached, (int32_t index, IUnknown* attached), (index, attached))
  GUARDED_OPERATION(get_ItemFlags, (int32_t index, int32_t* flags), (index, flags))
  GUARDED_OPERATION(put_ItemFlags, (int32_t index, int32_t flags), (index, flags))
  GUARDED_OPERATION(Add, (IString * name, IUnknown* object, IUnknown* attached, int32_t flags),
                    (name, object, attached, flags))
  GUARDED_OPERATION(Insert, (int32_t index, IString* name, IUnknown* object, IUnknown* attached, int32_t flags),
                    (index, name, object, attached, flags))
  GUARDED_OPERATION(VerifyInterface, (IUnknown * object, IInputParameter** verified), (object, verified))
  GUARDED_OPERATION(put_Item, (int32_t index, IUnknown* object), (index, object))
  GUARDED_OPERATION(Query, (const IID& iid, int32_t nth, int16_t useAttached, int32_t* index),
                    (iid, nth, useAttached, index))
  GUARDED_OPERATION(CollectionClear, (), ())
  GUARDED_OPERATION(Save, (IDataStream * stream, int32_t flags), (stream, flags))
  GUARDED_OPERATION(Load, (IDataStream * stream, int32_t flags), (stream, flags))
  GUARDED_OPERATION(Sort, (int32_t flags, void* compare), (flags, compare))
};

template <class Base>
struct InterfaceGuard<IParametersCreator, Base> : Base {
  GUARDED_OPERATION(Create, (IString * text, IString* separators, IParametersCreatable* target),
                    (text, separators, target))
  GUARDED_OPERATION(Translate, (IParameters * source, IParameters* names, IParameters* templ, IParametersCreatable* target),
                    (source, names, templ, target))
  GUARDED_OPERATION(Copy, (INamedCollection * source, IString* name, int32_t flags, IParametersCreatable* target),
                    (source, name, flags, target))
  GUARDED_OPERATION(SubSet, (INamedCollection * source, int32_t first, int32_t count, IParametersCreatable* target),
                    (source, first, count, target))
  GUARDED_OPERATION(Update, (INamedCollection * target, IUnknown* source, int16_t mode), (target, source, mode))
};

template <class Base>
struct InterfaceGuard<ITextParser, Base> : Base {
  GUARDED_OPERATION(get_Tags, (IString * *opening, IString** closing), (opening, closing))
  GUARDED_OPERATION(put_Tags, (IString * opening, IString* closing), (opening, closing))
  GUARDED_OPERATION(ParseTags, (IString * text, IString** result, INamedCollection* values, int32_t dropUnknown),
                    (text, result, values, dropUnknown))
  GUARDED_OPERATION(Translate, (IString * text, IString** result, INamedCollection* values), (text, result, values))
};

template <class Base>
struct InterfaceGuard<IFileArchive, Base> : Base {
  GUARDED_OPERATION(get_Filename, (IString * *name), (name))
  GUARDED_OPERATION(put_Filename, (IString * name), (name))
  GUARDED_OPERATION(get_Filter, (IString * *filter, int16_t reserved), (filter, reserved))
  GUARDED_OPERATION(get_Name, (IString * *name), (name))
  GUARDED_OPERATION(Load, (), ())
  GUARDED_OPERATION(Save, (), ())
  GUARDED_OPERATION(Control, (int32_t code, int32_t value), (code, value))
  GUARDED_OPERATION(Inquire, (int32_t code, int32_t* value), (code, value))
};

template <class Base>
struct InterfaceGuard<IPMSearch, Base> : Base {
  GUARDED_OPERATION(Find, (IString * condition, int32_t reserved, IUnknown** found), (condition, reserved, found))
};

template <class Base>
struct InterfaceGuard<IUIPropertyPageSpecify, Base> : Base {
  GUARDED_OPERATION(GetPages, (int32_t reserved, INamedCollection** pages, IUnknown** reserved2),
                    (reserved, pages, reserved2))
};

template <class Base>
struct InterfaceGuard<IParametricObject, Base> : Base {
  GUARDED_OPERATION(get_Parameters, (IParameters * *parameters), (parameters))
  GUARDED_OPERATION(put_Parameters, (IParameters * parameters), (parameters))
};

template <class Base>
struct InterfaceGuard<IDataPersist, Base> : Base {
  GUARDED_OPERATION(Save, (IDataStream * stream, int32_t flags), (stream, flags))
  GUARDED_OPERATION(Load, (IDataStream * stream, int32_t flags), (stream, flags))
};

#undef GUARDED_OPERATION

// Wraps T in the guard of each listed interface that T implements.
template <class T, class... Interfaces>
struct GuardChain : T {
  using GuardedClass = T;
  static_assert(!std::is_final_v<T>, "a creatable class is made as GuardedObject<T>: do not declare it final");
};

template <class T, class I, class... Rest>
struct GuardChain<T, I, Rest...>
    : std::conditional_t<std::is_base_of_v<I, T>, InterfaceGuard<I, GuardChain<T, Rest...>>, GuardChain<T, Rest...>> {};

template <class T>
class GuardedObject final
    : public GuardChain<T, ISimpleCollection, INamedCollection, ISuperCollection, IParameters, IExpression,
                        IInputParameter, IInputParameters, IParametersCreator, ITextParser, IFileArchive, IPMSearch,
                        IUIPropertyPageSpecify, IParametricObject, IDataPersist> {};
