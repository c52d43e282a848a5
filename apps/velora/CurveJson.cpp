#include "CurveJson.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>

#include "Spelling.h"

namespace velora::cli {
namespace {

// Its objects are found by key in few steps, however many keys a hostile file has.
using Json = nlohmann::json;

constexpr int kDeepestProduct = 8;
constexpr size_t kMostCurves = 256;

/// A number of the document's own; rows as those of curves.
struct DocumentNumber {
  CurveKey key;
  std::optional<uint32_t> CurveDocument::*member;
};

const DocumentNumber kDocumentNumbers[] = {
    {{"rate", nullptr, nullptr, CurveValueKind::kInteger, 1, 10'000'000, ""}, &CurveDocument::rate},
    {*FindCurveKey("sampleFreq"), &CurveDocument::sampleFreq},
    {*FindCurveKey("resolution"), &CurveDocument::resolution},
};

struct DocumentText {
  const char* name;
  std::string CurveDocument::*member;
};
constexpr DocumentText kDocumentTexts[] = {{"wave", &CurveDocument::wave},
                                           {"title", &CurveDocument::title}};

/// "line 3, column 5: unexpected ']'; expected ...", out of the library's words.
std::string FaultText(const std::string& what) {
  constexpr std::string_view kBefore = "parse error";
  const size_t start = what.find(kBefore);
  if (start == std::string::npos) return "is not JSON: " + what;
  std::string text = what.substr(start + kBefore.size());
  if (text.starts_with(" at ")) text.erase(0, 4);
  // "syntax error while parsing object - unexpected ...": what it was parsing helps nobody.
  constexpr std::string_view kNoise = "syntax error while parsing ";
  constexpr std::string_view kDash = " - ";
  const size_t noise = text.find(kNoise);
  const size_t dash = text.find(kDash, noise == std::string::npos ? noise : noise + kNoise.size());
  if (noise != std::string::npos && dash != std::string::npos) {
    text.erase(noise, dash + kDash.size() - noise);
  }
  return "is not JSON: " + text;
}

/// Parses, and refuses a key that stands twice in one object, of which the library
/// would keep the last.
Result<Json> ParseStrictly(const std::string& text) {
  std::vector<std::set<std::string>> open;
  std::string repeated;
  const auto watch = [&](int, Json::parse_event_t event, Json& parsed) {
    if (event == Json::parse_event_t::object_start) open.emplace_back();
    if (event == Json::parse_event_t::object_end) open.pop_back();
    if (event == Json::parse_event_t::key) {
      const auto key = parsed.get<std::string>();
      if (!open.back().insert(key).second && repeated.empty()) repeated = key;
    }
    return true;
  };
  try {
    Json document = Json::parse(text, watch);
    if (!repeated.empty())
      return Status::Error("has the key \"" + repeated + "\" twice in one object");
    return document;
  } catch (const nlohmann::json::exception& error) {
    return Status::Error(FaultText(error.what()));
  }
}

/// The form that ReadCurveValue takes: arrays as lists with commas, arrays in them
/// with colons.
Result<std::string> Written(const Json& value, char separator = ',') {
  if (value.is_string()) return value.get<std::string>();
  if (value.is_number() || value.is_boolean()) return value.dump();
  if (!value.is_array() || separator == 0) {
    return Status::Error("holds " + std::string(value.type_name()) + ", which has no place here");
  }
  std::string text;
  for (size_t i = 0; i < value.size(); ++i) {
    const auto item = Written(value[i], separator == ',' ? ':' : '\0');
    if (!item) return item;
    if (i > 0) text += separator;
    text += item.Value();
  }
  return text;
}

/// Whether the value has the JSON type that its key asks for.
Status CheckType(const CurveKey& key, const Json& value) {
  switch (key.kind) {
    case CurveValueKind::kInteger:
    case CurveValueKind::kFrequency:
      return value.is_number() ? Status() : Status::Error("is not a number");
    case CurveValueKind::kFlag:
      return value.is_boolean() ? Status() : Status::Error("is not true or false");
    case CurveValueKind::kText:
      return value.is_string() ? Status() : Status::Error("is not a text");
    case CurveValueKind::kPins:
      return value.is_number() || value.is_array() ? Status()
                                                   : Status::Error("is not a pin or an array");
    default:
      return value.is_array() ? Status() : Status::Error("is not an array");
  }
}

Status AddField(const CurveKey& key, const Json& value, CurveFields& fields) {
  if (Status type = CheckType(key, value); !type) return type;
  const auto text = Written(value);
  return text ? fields.Add(key, text.Value()) : text.GetStatus();
}

Result<CurveRequest> ReadCurve(const Json& object, const std::string& place, CurveRole role,
                               int depth);

Status ReadFactors(const Json& value, int depth, CurveRequest& request) {
  if (!value.is_array() || value.size() != 2) {
    return Status::Error("curves: a product has an array of two curves");
  }
  if (depth >= kDeepestProduct) return Status::Error("curves: products are nested too deep");
  for (size_t i = 0; i < value.size(); ++i) {
    auto part = ReadCurve(value[i], request.place + ".curves[" + std::to_string(i) + "]",
                          CurveRole::kFactor, depth + 1);
    if (!part) return part.GetStatus();
    request.parts.push_back(std::move(part.Value()));
  }
  return {};
}

Result<CurveRequest> ReadCurve(const Json& object, const std::string& place, CurveRole role,
                               int depth) {
  const std::string where = place.empty() ? "" : place + ": ";
  if (!object.is_object()) return Status::Error(where + "a curve is an object");
  const auto kind = object.find("kind");
  if (kind == object.end() || !kind->is_string()) {
    return Status::Error(where + "has no \"kind\", the text that names the kind of curve");
  }
  CurveRequest request;
  request.place = place;
  request.kind = FindCurveKind(kind->get<std::string>());
  if (!request.kind) {
    return Status::Error(where + NoSuchKind(kind->get<std::string>()).Message());
  }
  for (const auto& [name, value] : object.items()) {
    if (name == "kind") continue;
    if (Status takes = CheckTakesKey(*request.kind, role, name); !takes) {
      return Status::Error(where + takes.Message());
    }
    const CurveKey& key = *FindCurveKey(name);
    if (key.kind == CurveValueKind::kCurves) {
      // The parts' own messages have their place.
      if (Status parts = ReadFactors(value, depth, request); !parts) return parts;
      continue;
    }
    if (Status added = AddField(key, value, request.fields); !added) {
      return Status::Error(where + name + ": " + added.Message());
    }
  }
  return request;
}

bool IsDocumentKey(std::string_view name) {
  return std::ranges::any_of(kDocumentNumbers,
                             [name](const auto& n) { return n.key.name == name; }) ||
         std::ranges::any_of(kDocumentTexts, [name](const auto& t) { return t.name == name; });
}

/// Takes the document's own values; the rest stays.
Status TakeDocumentKeys(Json& object, CurveDocument& document) {
  for (const DocumentNumber& number : kDocumentNumbers) {
    const auto found = object.find(number.key.name);
    if (found == object.end()) continue;
    CurveFields fields;
    if (Status added = AddField(number.key, *found, fields); !added) {
      return Status::Error(std::string(number.key.name) + ": " + added.Message());
    }
    document.*number.member = static_cast<uint32_t>(fields.Integer(number.key.name, 0));
  }
  for (const DocumentText& text : kDocumentTexts) {
    const auto found = object.find(text.name);
    if (found == object.end()) continue;
    if (!found->is_string()) return Status::Error(std::string(text.name) + ": is not a text");
    document.*text.member = found->get<std::string>();
  }
  std::vector<std::string> taken;
  for (const auto& [name, value] : object.items()) {
    if (IsDocumentKey(name)) taken.push_back(name);
  }
  for (const std::string& name : taken) object.erase(name);
  return {};
}

Status CheckDocumentKeys(const Json& object) {
  std::vector<const char*> names = {"curves"};
  for (const DocumentNumber& number : kDocumentNumbers) names.push_back(number.key.name);
  for (const DocumentText& text : kDocumentTexts) names.push_back(text.name);
  for (const auto& [name, value] : object.items()) {
    if (name == "curves") continue;
    return Status::Error("a description has no '" + name + "'" + DidYouMean(name, names));
  }
  return {};
}

}  // namespace

Result<CurveDocument> ParseCurveDocument(const std::string& text) {
  auto parsed = ParseStrictly(text);
  if (!parsed) return parsed.GetStatus();
  Json& object = parsed.Value();
  if (!object.is_object() || !(object.contains("curves") || object.contains("kind"))) {
    return Status::Error("is not an object with \"curves\", nor with the \"kind\" of one curve");
  }
  CurveDocument document;
  if (Status taken = TakeDocumentKeys(object, document); !taken) return taken;
  if (object.contains("kind")) {
    auto curve = ReadCurve(object, "", CurveRole::kLane, 0);
    if (!curve) return curve.GetStatus();
    document.curves.push_back(std::move(curve.Value()));
    return document;
  }
  if (Status keys = CheckDocumentKeys(object); !keys) return keys;
  const Json& curves = object["curves"];
  if (!curves.is_array() || curves.empty()) {
    return Status::Error("curves: is not an array of curves");
  }
  if (curves.size() > kMostCurves) {
    return Status::Error("curves: there are " + std::to_string(curves.size()) + ", more than " +
                         std::to_string(kMostCurves));
  }
  for (size_t i = 0; i < curves.size(); ++i) {
    auto curve = ReadCurve(curves[i], "curves[" + std::to_string(i) + "]", CurveRole::kLane, 0);
    if (!curve) return curve.GetStatus();
    document.curves.push_back(std::move(curve.Value()));
  }
  return document;
}

}  // namespace velora::cli
