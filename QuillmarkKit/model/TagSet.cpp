#include "QuillmarkKit/model/TagSet.h"

#include <algorithm>

#include "platform/base/Strings.h"

namespace QuillmarkKit {

namespace {

std::string describe(const Artwork& artwork) {
  std::string format(rawValue(artwork.format));
  std::ranges::transform(format, format.begin(), platform::Strings::toASCIIUpper);
  return format + ", " + std::to_string(artwork.data.size()) + " bytes";
}

}  // namespace

std::optional<std::string> TagSet::value(TagField field) const {
  return dispatch(
      field, [&](TextMember text) { return this->*text; },
      [&](NumberMember number) {
        const Number& member = this->*number;
        return member ? std::optional(std::to_string(*member)) : std::nullopt;
      },
      [&] { return artwork ? std::optional(describe(*artwork)) : std::nullopt; });
}

TagFields TagSet::populatedFields() const {
  return differing(TagSet());
}

TagFields TagSet::differing(const TagSet& other) const {
  TagFields fields;
  for (const TagField field : allTagFields) {
    const bool isSame = dispatch(
        field, [&](TextMember text) { return this->*text == other.*text; },
        [&](NumberMember number) { return this->*number == other.*number; },
        [&] { return artwork == other.artwork; });
    if (!isSame) fields.insert(field);
  }
  return fields;
}

TagSet TagSet::merging(const TagSet& other, TagFields fields) const {
  TagSet merged = *this;
  for (const TagField field : allTagFields) {
    if (!fields.contains(field)) continue;
    dispatch(
        field, [&](TextMember text) { merged.*text = other.*text; },
        [&](NumberMember number) { merged.*number = other.*number; },
        [&] { merged.artwork = other.artwork; });
  }
  return merged;
}

TagSet TagSet::normalized() const {
  TagSet normalized = *this;
  normalized.normalize();
  return normalized;
}

void TagSet::normalize() {
  namespace Strings = platform::Strings;
  for (const TagField field : allTagFields) {
    const TextMember member = stringKeyPath(field);
    if (member == nullptr || !(this->*member)) continue;
    Text& text = this->*member;
    Strings::trim(*text, Strings::trimmingNulls(Strings::trimmingWhiteSpace(*text)));
    if (text->empty()) text.reset();
  }
}

std::string TagSet::summary() const {
  std::string lines;
  for (const TagField field : summaryFields) {
    const auto shown = value(field);
    if (!shown) continue;
    if (!lines.empty()) lines += '\n';
    lines.append(displayName(field)).append(": ").append(*shown);
  }
  return lines.empty() ? "No tags" : lines;
}

}  // namespace QuillmarkKit
