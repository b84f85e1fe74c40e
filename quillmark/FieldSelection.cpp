#include "quillmark/FieldSelection.h"

#include <algorithm>

#include "platform/base/Strings.h"
#include "quillmark/CLIError.h"
#include "quillmark/Hints.h"

namespace quillmark {

using QuillmarkKit::TagFields;

std::vector<QuillmarkKit::TagField> fieldsInOrder(std::string_view list) {
  std::vector<QuillmarkKit::TagField> fields;
  for (const std::string_view piece : platform::Strings::split(list, ',')) {
    const std::string_view name = platform::Strings::trimmingBlanks(piece);
    const auto field = QuillmarkKit::fieldFromCliName(name);
    if (!field) throw CLIError::unknownField(name, fieldHint(name));
    if (std::ranges::count(fields, *field) == 0) fields.push_back(*field);
  }
  return fields;
}

TagFields fieldsNamed(std::string_view list) {
  TagFields fields;
  for (const QuillmarkKit::TagField field : fieldsInOrder(list)) fields.insert(field);
  return fields;
}

TagFields fieldMask(const Arguments& from) {
  if (const auto list = from.value(options::fields)) return fieldsNamed(*list);
  return from.has(options::all) ? TagFields::all : TagFields::albumIdentity;
}

}  // namespace quillmark
