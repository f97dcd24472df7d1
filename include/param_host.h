// Host library: loading the framework and working with parameter sets, formulas and templates.
//
// A small C++ layer over the module's interfaces for programs that embed the
// parameter module. It loads the modules of a "_binlinux/" folder the way any
// host does, creates objects by class name, holds interface references in
// RAII holders (Ref<I>), gives typed access to a parameter set
// (`set[L"Speed"].Number()`, `set[L"Mode"] = L"auto"`), loads and saves sets by
// file name (the form follows the extension), evaluates formulas and fills
// tagged templates. Failures come back as values (Status, Result<T>) holding a
// one-line message; nothing is thrown out of the library.
//
// The framework is loaded once per process and never unloaded. Start() makes
// the folder that holds "_binlinux/" the current directory, as the modules
// expect; relative file names given to the library are resolved against the
// directory that was current before (ResolvePath).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "params.h"

namespace paramhost {

// Success, or a failure with a readable one-line message.
class Status {
 public:
  Status() = default;
  static Status Failure(std::string message) { return Status(std::move(message)); }
  bool ok() const { return m_Message.empty(); }
  explicit operator bool() const { return ok(); }
  const std::string& message() const { return m_Message; }

 private:
  explicit Status(std::string message) : m_Message(message.empty() ? "failed" : std::move(message)) {}
  std::string m_Message;
};

// A value, or a failure with its message.
template <class T>
class Result {
 public:
  Result(T value) : m_Value(std::move(value)) {}
  Result(Status failure) : m_Status(std::move(failure)) {}
  bool ok() const { return m_Status.ok(); }
  explicit operator bool() const { return ok(); }
  const std::string& message() const { return m_Status.message(); }
  const Status& status() const { return m_Status; }
  T& value() { return m_Value; }
  const T& value() const { return m_Value; }
  T& operator*() { return m_Value; }
  const T& operator*() const { return m_Value; }
  T* operator->() { return &m_Value; }
  const T* operator->() const { return &m_Value; }

 private:
  T m_Value{};
  Status m_Status;
};

// Holds one reference to an interface; released when the holder goes.
template <class I>
class Ref {
 public:
  Ref() = default;
  explicit Ref(I* pointer) : m_Pointer(pointer) {
    if (m_Pointer) m_Pointer->AddRef();
  }
  Ref(const Ref& other) : Ref(other.m_Pointer) {}
  Ref(Ref&& other) noexcept : m_Pointer(std::exchange(other.m_Pointer, nullptr)) {}
  Ref& operator=(Ref other) noexcept {
    std::swap(m_Pointer, other.m_Pointer);
    return *this;
  }
  ~Ref() { Reset(); }
  // Takes over a reference the caller already owns.
  static Ref Adopt(I* pointer) {
    Ref result;
    result.m_Pointer = pointer;
    return result;
  }
  void Reset() {
    if (I* taken = std::exchange(m_Pointer, nullptr)) taken->Release();
  }
  // The slot for an operation that hands out a new reference.
  I** Receive() {
    Reset();
    return &m_Pointer;
  }
  void** ReceiveVoid() { return reinterpret_cast<void**>(Receive()); }
  // Another interface of the same object, or an empty holder.
  template <class J>
  Ref<J> As(const IID& iid) const {
    Ref<J> other;
    if (m_Pointer) m_Pointer->QueryInterface(iid, other.ReceiveVoid());
    return other;
  }
  I* get() const { return m_Pointer; }
  I* operator->() const { return m_Pointer; }
  explicit operator bool() const { return m_Pointer != nullptr; }

 private:
  I* m_Pointer = nullptr;
};

// Starts the framework: `moduleFolder` holds "_binlinux/" with CollectionsEx.so,
// Collections.so and Parameters.so. Once per process; later calls check only
// that the same folder is asked for.
Status Start(const std::string& moduleFolder);
// The folder of the running program (where a build puts its _binlinux/ beside it).
std::string ProgramFolder();
// `path` made absolute against the directory that was current when Start ran.
std::string ResolvePath(const std::string& path);

// Creates an object of `className` answering `iid` into *object (one
// reference for the caller); the framework's result code.
HRESULT CreateInto(std::wstring_view className, const IID& iid, void** object);
// A new object of `className` answering `iid` (I's identity), or an empty holder.
template <class I>
Ref<I> Create(std::wstring_view className, const IID& iid) {
  Ref<I> object;
  CreateInto(className, iid, object.ReceiveVoid());
  return object;
}
// The process-wide component collection Start made (null before Start), for
// hosts that run framework code of their own against the same collection.
IComponentCollection* Components();
// The module serving `className` ("Parameters", ...), or "" when none does.
std::wstring ModuleOf(std::wstring_view className);

// Text conversions at the edges of a host: UTF-8 bytes and wide (UTF-32) text.
std::string ToUtf8(std::wstring_view text);
std::wstring FromUtf8(std::string_view text);
// The text of a framework string ("" for null).
std::wstring TextOf(IString* text);
// A new framework string holding `text`.
Ref<IString> MakeString(std::wstring_view text);

// A parameter value: empty, integer, real, text or object.
class Value {
 public:
  enum class Kind { kEmpty, kInteger, kReal, kText, kObject };
  Value() = default;
  explicit Value(Ref<IVariant> variant) : m_Variant(std::move(variant)) {}
  static Value Number(double number);
  static Value Integer(int32_t number);
  static Value Text(std::wstring_view text);
  // A number when the whole text reads as one ("12", "-0.5", "1e3"), else text.
  static Value Parse(std::wstring_view text);

  Kind kind() const;
  const char* KindName() const;  // "empty", "integer", "real", "text", "object"
  double ToNumber() const;       // the variant's own conversion (text: its leading number)
  // The module's text of the value: numbers with automatic decimals ("2.5",
  // "3", "0.333333333"), text as it is, an object's class name.
  std::wstring ToText() const;
  // The object a value holds, or an empty holder.
  Ref<IUnknown> Object() const;
  IVariant* variant() const { return m_Variant.get(); }

 private:
  Ref<IVariant> m_Variant;
};

class ParameterSet;

// One named parameter of a set, as `set[L"Speed"]` reads and assigns it.
class Parameter {
 public:
  Parameter(ParameterSet* set, std::wstring name) : m_Set(set), m_Name(std::move(name)) {}
  bool Exists() const;
  Value Get() const;            // empty when the set has no such parameter
  double Number() const;        // 0 when absent
  std::wstring Text() const;    // "" when absent
  // Replaces the value (flags and descriptor stay) or adds the parameter.
  Parameter& operator=(double number);
  Parameter& operator=(std::wstring_view text);
  Parameter& operator=(const Value& value);

 private:
  ParameterSet* m_Set;
  std::wstring m_Name;
};

// Everything a set holds about one parameter.
struct ParameterRecord {
  std::wstring name;
  Value value;
  int32_t flags = 0;
  Ref<IUnknown> descriptor;
};

// A "ParametersCreatable": an ordered set of named values with flags and descriptors.
class ParameterSet {
 public:
  // A new empty set; check valid() (false when the framework could not make one).
  static ParameterSet New();
  // A view of an existing set (holds a reference to it).
  static ParameterSet Wrap(IParametersCreatable* set);
  bool valid() const { return static_cast<bool>(m_Set); }
  IParametersCreatable* get() const { return m_Set.get(); }

  int32_t Count() const;
  ParameterRecord At(int32_t index) const;
  // The index of the first parameter of that name (A-Z matched in either case), or -1.
  int32_t IndexOf(std::wstring_view name) const;
  Parameter operator[](std::wstring_view name) { return Parameter(this, std::wstring(name)); }
  // Replaces value, flags and descriptor of the named parameter, or adds it.
  Status Put(std::wstring_view name, const Value& value, int32_t flags, IUnknown* descriptor);
  // Replaces only the value, or adds the parameter with flags 0.
  Status PutValue(std::wstring_view name, const Value& value);
  // Tests a condition such as "Speed>=10", "Speed=10+-5%" or "Mode='auto'".
  bool Holds(std::wstring_view condition) const;

 private:
  Ref<IParametersCreatable> m_Set;
};

// The storage forms, chosen by a file name's extension.
enum class FileForm { kUnknown, kXML, kINI, kCSV, kFolderStream };
// ".xml" XML, ".ini" INI, ".csv" CSV, an extension beginning with "t" (".tree") a folder stream.
FileForm FormOf(const std::string& fileName);
const char* FormName(FileForm form);

// Loads a set from a file in any form (XML keeps flags and descriptors). A
// malformed XML file gives "FILE:LINE:COLUMN: malformed XML".
Result<ParameterSet> LoadParameters(const std::string& fileName);
// Saves a set in the form the extension selects. The file is replaced safely:
// on failure the old file stays as it was.
Status SaveParameters(const ParameterSet& set, const std::string& fileName);

// Evaluates a one-line formula against the set.
Result<Value> Evaluate(std::wstring_view formula, const ParameterSet& set);

struct TemplateOptions {
  std::wstring opening = L"__";
  std::wstring closing = L"__";
  bool dropUnknown = false;  // unknown tags vanish instead of staying as they are
};
// Fills the tags of `text` with the set's values. Every line of the result ends with "\r\n".
Result<std::wstring> FillTemplate(std::wstring_view text, const ParameterSet& set, const TemplateOptions& options);

// A whole text file (UTF-8, or UTF-16 with a byte-order mark) as wide text.
Result<std::wstring> ReadTextFile(const std::string& fileName);
// Writes UTF-8 text safely (temporary file, then rename).
Status WriteTextFile(const std::string& fileName, std::string_view bytes);

}  // namespace paramhost
