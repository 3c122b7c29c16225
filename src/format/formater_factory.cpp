#include "format/formater_factory.h"

#include <new>

#include "support/string_helpers.h"

namespace qv {
namespace {

// The name is searched for inside the constants, so "ref" and "lang" are strings too.
bool MeansString(std::u16string_view upperName) {
  constexpr std::u16string_view kReference = u"IDREF";
  constexpr std::u16string_view kLanguage = u"LANGUAGE";
  constexpr std::size_t kNone = std::u16string_view::npos;
  return !upperName.empty() && (kReference.find(upperName) != kNone || kLanguage.find(upperName) != kNone);
}

}  // namespace

FormaterCreator::FormaterCreator(const WideString& typeName) {
  FormaterFactory::Instance()->Register(typeName, this);
}

void FormaterFactory::Register(const WideString& name, FormaterCreator* creator) {
  try {
    creators_.emplace(ToUpper(name), creator);
  } catch (const std::bad_alloc&) {
    _com_raise_error(E_OUTOFMEMORY);
  }
}

FormaterSerializer* FormaterFactory::GetFormater(const WideString& typeName) {
  const WideString name = ToUpper(typeName);
  const auto found = creators_.find(MeansString(name.view()) ? WideString(u"STRING") : name);
  return found == creators_.end() ? nullptr : found->second->GetSerializer();
}

void FormaterFactory::RegisterAll(const FormaterFactory& other) {
  try {
    std::map<WideString, FormaterCreator*> all = creators_;
    all.insert(other.creators_.begin(), other.creators_.end());
    creators_.swap(all);
  } catch (const std::bad_alloc&) {
    _com_raise_error(E_OUTOFMEMORY);
  }
}

std::mutex& FormaterMutex() noexcept {
  static std::mutex mutex;
  return mutex;
}

FormaterSerializer* FindFormater(const WideString& typeName) {
  const std::lock_guard<std::mutex> lock(FormaterMutex());
  return FormaterFactory::Instance()->GetFormater(typeName);
}

}  // namespace qv
