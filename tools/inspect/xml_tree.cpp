#include "tools/inspect/xml_tree.h"

#include <expat.h>

#include <algorithm>
#include <memory>
#include <new>

namespace qv::cli {

namespace {

constexpr std::size_t kMostNodes = 1000000;
constexpr std::size_t kDeepest = 200;
constexpr std::size_t kPiece = std::size_t{1} << 20;

struct Free {
  void operator()(XML_Parser parser) const noexcept { XML_ParserFree(parser); }
};

class TreeBuilder {
 public:
  explicit TreeBuilder(const std::string& charset)
      : parser_(XML_ParserCreate(charset.empty() ? nullptr : charset.c_str())) {
    if (parser_ == nullptr) throw std::bad_alloc();
    XML_SetUserData(parser_.get(), this);
    XML_SetElementHandler(parser_.get(), OnStart, OnEnd);
    XML_SetCharacterDataHandler(parser_.get(), OnText);
    XML_SetCommentHandler(parser_.get(), OnComment);
    XML_SetProcessingInstructionHandler(parser_.get(), OnInstruction);
    XML_SetUnknownEncodingHandler(parser_.get(), OnEncoding, nullptr);
  }

  XmlTree Read(std::string_view bytes) {
    XML_Status status = XML_STATUS_OK;
    do {
      const std::string_view piece = bytes.substr(0, kPiece);
      bytes.remove_prefix(piece.size());
      status = XML_Parse(parser_.get(), piece.data(), static_cast<int>(piece.size()), bytes.empty() ? 1 : 0);
    } while (status == XML_STATUS_OK && !bytes.empty());
    if (status != XML_STATUS_OK) return Flawed();
    return {std::move(top_.children.front()), {}};
  }

 private:
  static TreeBuilder& Of(void* data) { return *static_cast<TreeBuilder*>(data); }
  static void OnStart(void* data, const XML_Char* name, const XML_Char** attributes) {
    Of(data).Start(name, attributes);
  }
  static void OnEnd(void* data, const XML_Char*) { Of(data).End(); }
  static void OnText(void* data, const XML_Char* text, int length) {
    Of(data).Text({text, static_cast<std::size_t>(length)});
  }
  static void OnComment(void* data, const XML_Char*) { Of(data).Comment(); }
  static void OnInstruction(void* data, const XML_Char*, const XML_Char*) { Of(data).Comment(); }
  // Any other encoding: one byte for each character, which is enough to find tags.
  static int OnEncoding(void*, const XML_Char*, XML_Encoding* encoding) {
    for (int byte = 0; byte < 256; ++byte) encoding->map[byte] = byte;
    encoding->data = nullptr;
    encoding->convert = nullptr;
    encoding->release = nullptr;
    return XML_STATUS_OK;
  }

  std::size_t Begin() const { return static_cast<std::size_t>(XML_GetCurrentByteIndex(parser_.get())); }
  // After the tag or text that is being read.
  std::size_t Here() const {
    return Begin() + static_cast<std::size_t>(XML_GetCurrentByteCount(parser_.get()));
  }

  // The open elements are the last children of each other.
  XmlNode& Open() {
    XmlNode* node = &top_;
    for (std::size_t i = 0; i < depth_; ++i) node = &node->children.back();
    return *node;
  }

  XmlNode& Add(XmlNode::Kind kind) {
    if (++nodes_ > kMostNodes || depth_ >= kDeepest) {
      limit_ = nodes_ > kMostNodes ? "more than a million nodes" : "elements deeper than 200 in each other";
      XML_StopParser(parser_.get(), XML_FALSE);
    }
    XmlNode node;
    node.kind = kind;
    node.begin = Begin();
    node.end = Here();
    std::vector<XmlNode>& siblings = Open().children;
    return siblings.emplace_back(std::move(node));
  }

  void Start(const XML_Char* name, const XML_Char** attributes) {
    XmlNode& node = Add(XmlNode::Kind::kElement);
    node.name = name;
    for (; *attributes != nullptr; attributes += 2)
      node.attributes.emplace_back(attributes[0], attributes[1]);
    ++depth_;
  }

  void End() {
    XmlNode& node = Open();
    node.end = std::max(node.end, Here());
    --depth_;
  }

  void Text(std::string_view text) {
    if (depth_ == 0) return;
    std::vector<XmlNode>& siblings = Open().children;
    XmlNode& node = !siblings.empty() && siblings.back().kind == XmlNode::Kind::kText
                        ? siblings.back()
                        : Add(XmlNode::Kind::kText);
    node.text += text;
    node.end = Here();
  }

  void Comment() {
    if (depth_ > 0) Add(XmlNode::Kind::kComment);
  }

  XmlTree Flawed() const {
    const XML_Error code = XML_GetErrorCode(parser_.get());
    return {{}, XmlFlaw{limit_ != nullptr ? limit_ : XML_ErrorString(code), Begin()}};
  }

  std::unique_ptr<XML_ParserStruct, Free> parser_;
  XmlNode top_;
  std::size_t depth_ = 0;
  std::size_t nodes_ = 0;
  const char* limit_ = nullptr;
};

}  // namespace

std::string XmlNode::OwnText() const {
  std::string own;
  for (const XmlNode& child : children) own += child.text;
  return own;
}

const std::string* XmlNode::Attribute(std::string_view attribute) const {
  for (const auto& [name_, value] : attributes)
    if (name_ == attribute) return &value;
  return nullptr;
}

const XmlNode* XmlNode::FirstElement() const {
  const auto found =
      std::find_if(children.begin(), children.end(), [](const XmlNode& child) { return child.IsElement(); });
  return found == children.end() ? nullptr : &*found;
}

std::string_view LocalName(std::string_view name) {
  return name.substr(name.find(':') == std::string_view::npos ? 0 : name.find(':') + 1);
}

std::string_view PrefixOf(std::string_view name) {
  return name.substr(0, name.find(':') == std::string_view::npos ? 0 : name.find(':'));
}

XmlTree ReadXml(std::string_view bytes, const std::string& charset) {
  return TreeBuilder(charset).Read(bytes);
}

}  // namespace qv::cli
