#include "format/formater_factory.h"

#include "support/string_helpers.h"

namespace qv {
namespace {

// The name is searched for inside the constants, and not the other way round: "ref" and "lang" are strings
// too.
bool MeansString(const WideString& upperName) {
  return Find(upperName, u"IDREF") >= 0 || Find(upperName, u"LANGUAGE") >= 0;
}

}  // namespace

FormaterCreator::FormaterCreator(const WideString& typeName) {
  FormaterFactory::Instance()->Register(typeName, this);
}

void FormaterFactory::Register(const WideString& name, FormaterCreator* creator) {
  creators_.emplace(ToUpper(name), creator);
}

FormaterSerializer* FormaterFactory::GetFormater(const WideString& typeName) {
  const WideString name = ToUpper(typeName);
  const auto found = creators_.find(MeansString(name) ? WideString(u"STRING") : name);
  return found == creators_.end() ? nullptr : found->second->GetSerializer();
}

}  // namespace qv
