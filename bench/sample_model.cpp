#include "sample_model.h"

#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"
#include "script_sample.h"

namespace qv::bench {

IConnectionModelPtr SampleModel(const std::string& url) {
  IConnectionModelPtr model = CreateConnectionModel();
  const IConnectionModelRawPtr raw = As<IConnectionModelRaw>(model);
  ThrowIfFailed(raw->SetServer(FromUtf8(url), u""), model.get(), IConnectionModel::kIid);
  ThrowIfFailed(model->SetUSID(FromUtf8(kSampleSession)), model.get(), IConnectionModel::kIid);
  return model;
}

}  // namespace qv::bench
