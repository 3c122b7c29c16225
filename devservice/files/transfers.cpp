#include "devservice/files/transfers.h"

namespace qv::devservice {
namespace {

BodyPlan Refuse(int status, const std::string& text) {
  return {PlainAnswer(status, text + "\n"), nullptr};
}

HttpAnswer Redirection() {
  HttpAnswer answer = PlainAnswer(302, "The file is elsewhere.\n");
  answer.headers = "Location: http://elsewhere.quorvane.example/\r\n";
  return answer;
}

// Writes a body to a file, which becomes the session's.
class UploadSink : public BodySink {
 public:
  UploadSink(std::string path, std::shared_ptr<SessionFiles> files, std::string ticket, ServiceStats& stats)
      : writer_(std::move(path)), files_(std::move(files)), ticket_(std::move(ticket)), stats_(stats) {}

  std::optional<HttpAnswer> Write(const char* bytes, std::size_t count) override {
    if (writer_.Write(bytes, count)) return std::nullopt;
    return Failure();
  }

  HttpAnswer Finish() override {
    if (!writer_.Close()) return Failure();
    if (!files_->Store(ticket_, writer_.TakeFile())) return PlainAnswer(403, "The session has ended.\n");
    ++stats_.uploads;
    stats_.uploadedBytes += writer_.Size();
    return PlainAnswer(200, "The file has arrived.\n");
  }

 private:
  HttpAnswer Failure() const {
    const int status = StatusOfWriteError(writer_.Error());
    return PlainAnswer(status,
                       status == 507 ? "There is no room for the file.\n" : "The file cannot be written.\n");
  }

  SpoolWriter writer_;
  const std::shared_ptr<SessionFiles> files_;
  const std::string ticket_;
  ServiceStats& stats_;
};

// Reads half of a body and then closes the connection, at once or after the stall time.
class HaltingSink : public BodySink {
 public:
  HaltingSink(std::uint64_t wanted, bool stalls) : wanted_(wanted) {
    answer_.delivery = Delivery::kDrop;
    answer_.delayed = stalls;
  }

  std::optional<HttpAnswer> Write(const char*, std::size_t count) override {
    taken_ += count;
    if (taken_ < wanted_) return std::nullopt;
    return answer_;
  }

  HttpAnswer Finish() override { return answer_; }

 private:
  const std::uint64_t wanted_;
  std::uint64_t taken_ = 0;
  HttpAnswer answer_;
};

std::string Disposition(const std::string& name, const TransferForms& forms) {
  if (forms.unnamed) return "";
  // Without quotes: clients take the text after the last "=" as it is.
  return "Content-Disposition: attachment; filename=" + std::string(forms.fileName.value_or(name)) + "\r\n";
}

}  // namespace

BodyPlan Transfers::PlanUpload(const HttpRequest& head, const TransferForms& forms) {
  if (forms.redirected) return {Redirection(), nullptr};
  if (forms.upload == UploadEnd::kRefused) return Refuse(403, "The upload is refused on request.");
  const std::shared_ptr<SessionFiles> files = sessions_.Find(head.usid);
  if (!files) return Refuse(403, "The header usid names no open session.");
  if (!files->HasTicket(head.ticket)) {
    if (sessions_.KnowsTicket(head.ticket)) return Refuse(403, "The ticket is that of another session.");
    return Refuse(404, "The ticket is not known.");
  }
  if (!head.bodyLength) return Refuse(411, "An upload needs a Content-Length.");
  if (*head.bodyLength > maxUploadBytes_) return Refuse(413, "The file is too large.");
  if (forms.upload != UploadEnd::kKept) {
    return {std::nullopt,
            std::make_unique<HaltingSink>(*head.bodyLength / 2, forms.upload == UploadEnd::kStalled)};
  }
  return {std::nullopt, std::make_unique<UploadSink>(spool_.NewPath(), files, head.ticket, stats_)};
}

HttpAnswer Transfers::Download(const HttpRequest& request, const std::string& id,
                               const TransferForms& forms) {
  if (forms.redirected) return Redirection();
  const std::shared_ptr<SessionFiles> files = sessions_.Find(request.usid);
  if (!files) return PlainAnswer(403, "The header usid names no open session.\n");
  const std::optional<PublishedFile> published = files->Published(id);
  if (!published) {
    if (sessions_.KnowsPublished(id)) return PlainAnswer(403, "The file is that of another session.\n");
    return PlainAnswer(404, "There is no such file.\n");
  }
  if (request.method != "HEAD") ++stats_.downloads;
  HttpAnswer answer;
  answer.contentType = "application/octet-stream";
  answer.headers = Disposition(published->name, forms);
  answer.file = published->file;
  answer.delivery = forms.download;
  return answer;
}

}  // namespace qv::devservice
