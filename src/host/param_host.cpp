// Host library: starting the framework, creating objects, text, values and parameter sets.
#include "param_host.h"

#include <dlfcn.h>
#include <unistd.h>

#include <cctype>
#include <charconv>
#include <climits>
#include <cwchar>
#include <filesystem>

namespace paramhost {
namespace {

typedef int32_t (*CreateFunctionType)(tagREFString, void**);

// An index the named collection answers for a name it does not hold.
constexpr int32_t kUnknownNameIndex = 65535;

tagREFString ViewOf(std::wstring_view text) { return {static_cast<int32_t>(text.size()), text.data()}; }

// What Start sets up, once per process.
struct FrameworkState {
  std::string moduleFolder;
  std::string callerFolder;
  Ref<IComponentCollection> collection;
  // Scratch objects that turn a number into the module's text.
  Ref<IParametersCreatable> formatterSet;
  Ref<ITextParser> formatterParser;
  Ref<IString> formatterTemplate;
};

FrameworkState& State() {
  static FrameworkState state;
  return state;
}

std::string CurrentFolder() {
  char buffer[PATH_MAX];
  return getcwd(buffer, sizeof(buffer)) ? std::string(buffer) : std::string(".");
}

// The module's text of a number: a one-parameter set filled into "__v__" by
// the text parser, which writes numbers as the module's files do.
std::wstring NumberText(IVariant* number) {
  FrameworkState& state = State();
  if (!state.formatterSet) {
    ParameterSet set = ParameterSet::New();
    state.formatterSet = Ref<IParametersCreatable>(set.get());
    state.formatterParser = Create<ITextParser>(L"TextParser", IID_ITextParser);
    state.formatterTemplate = MakeString(L"__v__");
    if (state.formatterSet) state.formatterSet->Add(MakeString(L"v").get(), number, nullptr, 0);
  }
  if (!state.formatterSet || !state.formatterParser) return L"";
  state.formatterSet->put_Item(0, number);
  Ref<IString> filled;
  state.formatterParser->ParseTags(state.formatterTemplate.get(), filled.Receive(), state.formatterSet.get(), 0);
  std::wstring text = TextOf(filled.get());
  while (!text.empty() && (text.back() == L'\n' || text.back() == L'\r')) text.pop_back();
  return text;
}

Ref<IVariant> NewVariant() { return Create<IVariant>(L"Variant", IID_IVariant); }

}  // namespace

Status Start(const std::string& moduleFolder) {
  FrameworkState& state = State();
  std::error_code error;
  const std::string folder = std::filesystem::absolute(moduleFolder, error).lexically_normal().string();
  if (state.collection) {
    if (folder == state.moduleFolder) return Status();
    return Status::Failure("the framework is already started from " + state.moduleFolder);
  }
  const std::string modules = (std::filesystem::path(folder) / "_binlinux").string();
  if (!std::filesystem::is_directory(modules, error)) return Status::Failure("no module folder " + modules);
  const std::string caller = CurrentFolder();
  if (chdir(folder.c_str()) != 0) return Status::Failure("cannot enter " + folder);
  void* library = dlopen("./_binlinux/CollectionsEx.so", RTLD_NOW);
  if (!library) {
    const char* reason = dlerror();
    return Status::Failure(std::string("cannot load ./_binlinux/CollectionsEx.so: ") + (reason ? reason : ""));
  }
  auto createFunction = reinterpret_cast<CreateFunctionType>(dlsym(library, kCreateFunctionSymbol));
  void* create = nullptr;
  if (!createFunction || createFunction(ViewOf(L"GlobalComponentCollection"), &create) != S_OK || !create)
    return Status::Failure("CollectionsEx.so does not serve GlobalComponentCollection");
  IID iid = IID_IComponentCollection;
  reinterpret_cast<CreationFunction>(create)(nullptr, &iid, state.collection.ReceiveVoid());
  if (!state.collection) return Status::Failure("the global component collection could not be created");
  state.moduleFolder = folder;
  state.callerFolder = caller;
  return Status();
}

std::string ProgramFolder() {
  char buffer[PATH_MAX];
  const ssize_t length = readlink("/proc/self/exe", buffer, sizeof(buffer) - 1);
  if (length <= 0) return CurrentFolder();
  return std::filesystem::path(std::string(buffer, static_cast<size_t>(length))).parent_path().string();
}

std::string ResolvePath(const std::string& path) {
  const std::string& base = State().callerFolder;
  std::filesystem::path resolved(path);
  if (resolved.is_relative()) resolved = std::filesystem::path(base.empty() ? CurrentFolder() : base) / resolved;
  return resolved.lexically_normal().string();
}

HRESULT CreateInto(std::wstring_view className, const IID& iid, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  IComponentCollection* collection = State().collection.get();
  if (!collection) return CO_E_CREATEFAILED;
  IID wanted = iid;
  return collection->CreateByName(ViewOf(className), &wanted, object);
}

IComponentCollection* Components() { return State().collection.get(); }

std::wstring ModuleOf(std::wstring_view className) {
  IComponentCollection* collection = State().collection.get();
  if (!collection) return L"";
  int32_t handle = -1;
  if (FAILED(collection->Find(MakeString(className).get(), &handle)) || handle < 0) return L"";
  Ref<IUnknown> item;
  collection->GetItem(handle, item.Receive());
  Ref<IComponentString> component = item.As<IComponentString>(IID_IComponentString);
  Ref<IString> module;
  if (!component || FAILED(component->GetProperty(kComponentModuleName, module.Receive()))) return L"";
  return TextOf(module.get());
}

std::string ToUtf8(std::wstring_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  for (wchar_t character : text) {
    auto code = static_cast<uint32_t>(character);
    if (code > 0x10FFFF || (code >= 0xD800 && code < 0xE000)) code = 0xFFFD;
    if (code < 0x80) {
      bytes.push_back(static_cast<char>(code));
    } else if (code < 0x800) {
      bytes.push_back(static_cast<char>(0xC0 | code >> 6));
      bytes.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    } else if (code < 0x10000) {
      bytes.push_back(static_cast<char>(0xE0 | code >> 12));
      bytes.push_back(static_cast<char>(0x80 | (code >> 6 & 0x3F)));
      bytes.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    } else {
      bytes.push_back(static_cast<char>(0xF0 | code >> 18));
      bytes.push_back(static_cast<char>(0x80 | (code >> 12 & 0x3F)));
      bytes.push_back(static_cast<char>(0x80 | (code >> 6 & 0x3F)));
      bytes.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    }
  }
  return bytes;
}

// Strict UTF-8; a byte that does not start a valid sequence stands for itself (8-bit text).
std::wstring FromUtf8(std::string_view text) {
  std::wstring wide;
  wide.reserve(text.size());
  const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
  const size_t size = text.size();
  for (size_t i = 0; i < size;) {
    const unsigned char lead = bytes[i];
    const int extra = lead >= 0xF0 && lead < 0xF5 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC2 && lead < 0xE0 ? 1 : 0;
    uint32_t code = extra == 3 ? lead & 0x07u : extra == 2 ? lead & 0x0Fu : lead & 0x1Fu;
    bool valid = extra > 0 && i + static_cast<size_t>(extra) < size;
    for (int k = 1; valid && k <= extra; ++k) {
      if ((bytes[i + k] & 0xC0) != 0x80) valid = false;
      code = code << 6 | (bytes[i + k] & 0x3Fu);
    }
    if (valid && (code < (extra == 2 ? 0x800u : extra == 3 ? 0x10000u : 0x80u) || code > 0x10FFFF)) valid = false;
    if (valid) {
      wide.push_back(static_cast<wchar_t>(code));
      i += static_cast<size_t>(extra) + 1;
    } else {
      wide.push_back(static_cast<wchar_t>(lead));
      ++i;
    }
  }
  return wide;
}

std::wstring TextOf(IString* text) {
  const wchar_t* buffer = nullptr;
  int32_t length = 0;
  if (!text || FAILED(text->GetBuffer(&buffer, &length)) || !buffer || length <= 0) return L"";
  return std::wstring(buffer, static_cast<size_t>(length));
}

Ref<IString> MakeString(std::wstring_view text) {
  Ref<ICreatableString> string = Create<ICreatableString>(L"CreatableString", IID_ICreatableString);
  if (string) string->SetText(ViewOf(text));
  return Ref<IString>(string.get());
}

Value Value::Number(double number) {
  Ref<IVariant> variant = NewVariant();
  if (variant) variant->SetDouble(number);
  return Value(variant);
}

Value Value::Integer(int32_t number) {
  Ref<IVariant> variant = NewVariant();
  if (variant) variant->SetLong(number);
  return Value(variant);
}

Value Value::Text(std::wstring_view text) {
  Ref<IVariant> variant = NewVariant();
  if (variant) variant->SetString(MakeString(text).get());
  return Value(variant);
}

Value Value::Parse(std::wstring_view text) {
  std::string narrow;
  for (wchar_t character : text) {
    if (character <= 0 || character >= 0x80) return Text(text);
    narrow.push_back(static_cast<char>(character));
  }
  const char* first = narrow.data();
  const char* last = first + narrow.size();
  // Only digits, a sign or a point may start a number (from_chars would also take "inf" and "nan").
  if (narrow.empty() || !(std::isdigit(static_cast<unsigned char>(narrow[0])) || narrow[0] == '-' || narrow[0] == '.'))
    return Text(text);
  int32_t integer = 0;
  if (auto read = std::from_chars(first, last, integer); read.ec == std::errc() && read.ptr == last)
    return Integer(integer);
  double real = 0;
  if (auto read = std::from_chars(first, last, real); read.ec == std::errc() && read.ptr == last) return Number(real);
  return Text(text);
}

Value::Kind Value::kind() const {
  if (!m_Variant) return Kind::kEmpty;
  switch (m_Variant->GetType()) {
    case kVariantInteger: return Kind::kInteger;
    case kVariantReal: return Kind::kReal;
    default: break;
  }
  if (m_Variant->IsString()) return Kind::kText;
  if (m_Variant->IsObject()) return Kind::kObject;
  return Kind::kEmpty;
}

const char* Value::KindName() const {
  switch (kind()) {
    case Kind::kInteger: return "integer";
    case Kind::kReal: return "real";
    case Kind::kText: return "text";
    case Kind::kObject: return "object";
    case Kind::kEmpty: break;
  }
  return "empty";
}

double Value::ToNumber() const { return m_Variant ? m_Variant->GetDouble() : 0; }

std::wstring Value::ToText() const {
  switch (kind()) {
    case Kind::kInteger:
    case Kind::kReal: return NumberText(m_Variant.get());
    case Kind::kText: {
      Ref<IString> text;
      m_Variant->GetString(text.Receive());
      return TextOf(text.get());
    }
    case Kind::kObject: {
      Ref<IObjectInfo> info = Object().As<IObjectInfo>(IID_IObjectInfo);
      tagREFString name{0, nullptr};
      if (!info || FAILED(info->GetName(0, &name)) || !name.text || name.length <= 0) return L"";
      return std::wstring(name.text, static_cast<size_t>(name.length));
    }
    case Kind::kEmpty: break;
  }
  return L"";
}

Ref<IUnknown> Value::Object() const {
  Ref<IUnknown> object;
  if (m_Variant && m_Variant->IsObject()) m_Variant->GetObject(object.Receive());
  return object;
}

bool Parameter::Exists() const { return m_Set->IndexOf(m_Name) >= 0; }

Value Parameter::Get() const {
  const int32_t index = m_Set->IndexOf(m_Name);
  return index < 0 ? Value() : m_Set->At(index).value;
}

double Parameter::Number() const { return Get().ToNumber(); }
std::wstring Parameter::Text() const { return Get().ToText(); }

Parameter& Parameter::operator=(double number) { return *this = Value::Number(number); }
Parameter& Parameter::operator=(std::wstring_view text) { return *this = Value::Text(text); }
Parameter& Parameter::operator=(const Value& value) {
  m_Set->PutValue(m_Name, value);
  return *this;
}

ParameterSet ParameterSet::New() {
  ParameterSet set;
  set.m_Set = Create<IParametersCreatable>(L"ParametersCreatable", IID_IParametersCreatable);
  return set;
}

ParameterSet ParameterSet::Wrap(IParametersCreatable* existing) {
  ParameterSet set;
  set.m_Set = Ref<IParametersCreatable>(existing);
  return set;
}

int32_t ParameterSet::Count() const {
  int32_t count = 0;
  if (m_Set) m_Set->get_Count(&count);
  return count;
}

ParameterRecord ParameterSet::At(int32_t index) const {
  ParameterRecord record;
  if (!m_Set) return record;
  Ref<IString> name;
  Ref<IVariant> value;
  m_Set->get_ItemName(index, name.Receive());
  m_Set->get_ItemVariant(index, value.Receive());
  m_Set->get_ItemDescriptor(index, record.descriptor.Receive());
  m_Set->get_ItemFlags(index, &record.flags);
  record.name = TextOf(name.get());
  record.value = Value(value);
  return record;
}

int32_t ParameterSet::IndexOf(std::wstring_view name) const {
  if (!m_Set) return -1;
  int32_t index = -1;
  if (FAILED(m_Set->get_Index(MakeString(name).get(), &index)) || index == kUnknownNameIndex) return -1;
  return index >= 0 && index < Count() ? index : -1;
}

Status ParameterSet::Put(std::wstring_view name, const Value& value, int32_t flags, IUnknown* descriptor) {
  if (!m_Set) return Status::Failure("no parameter set");
  Value stored = value.variant() ? value : Value(NewVariant());
  const int32_t index = IndexOf(name);
  HRESULT result = S_OK;
  if (index < 0) {
    result = m_Set->Add(MakeString(name).get(), stored.variant(), descriptor, flags);
  } else {
    result = m_Set->put_Item(index, stored.variant());
    if (SUCCEEDED(result)) result = m_Set->put_ItemFlags(index, flags);
    if (SUCCEEDED(result)) result = m_Set->put_ItemDescriptor(index, descriptor);
  }
  if (FAILED(result)) return Status::Failure("cannot set " + ToUtf8(name));
  return Status();
}

Status ParameterSet::PutValue(std::wstring_view name, const Value& value) {
  const int32_t index = IndexOf(name);
  if (index < 0) return Put(name, value, 0, nullptr);
  Value stored = value.variant() ? value : Value(NewVariant());
  if (FAILED(m_Set->put_Item(index, stored.variant()))) return Status::Failure("cannot set " + ToUtf8(name));
  return Status();
}

bool ParameterSet::Holds(std::wstring_view condition) const {
  Ref<IPMSearch> search = Ref<IParametersCreatable>(m_Set).As<IPMSearch>(IID_IPMSearch);
  Ref<IUnknown> found;
  return search && search->Find(MakeString(condition).get(), 0, found.Receive()) == S_OK;
}

Result<Value> Evaluate(std::wstring_view formula, const ParameterSet& set) {
  Ref<IExpression> expression = Create<IExpression>(L"Expression", IID_IExpression);
  if (!expression) return Status::Failure("the framework cannot make an Expression");
  expression->put_Expression(ViewOf(formula));
  if (FAILED(expression->Evaluate(set.get()))) return Status::Failure("cannot evaluate " + ToUtf8(formula));
  Ref<IVariant> value;
  expression->get_Value(value.Receive());
  return Value(value);
}

Result<std::wstring> FillTemplate(std::wstring_view text, const ParameterSet& set, const TemplateOptions& options) {
  Ref<ITextParser> parser = Create<ITextParser>(L"TextParser", IID_ITextParser);
  if (!parser) return Status::Failure("the framework cannot make a TextParser");
  parser->put_Tags(MakeString(options.opening).get(), MakeString(options.closing).get());
  Ref<IString> filled;
  const HRESULT result =
      parser->ParseTags(MakeString(text).get(), filled.Receive(), set.get(), options.dropUnknown ? 1 : 0);
  if (FAILED(result)) return Status::Failure("cannot fill the template");
  return TextOf(filled.get());
}

}  // namespace paramhost
