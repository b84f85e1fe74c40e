#include "quillmark/Fields.h"

#include <algorithm>

#include "QuillmarkKit/model/TagField.h"
#include "platform/base/Strings.h"
#include "quillmark/CLIError.h"
#include "quillmark/Commands.h"
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

using QuillmarkKit::TagField;

int commandFields(Console& console) {
  auto fields = QuillmarkKit::allTagFields;
  std::ranges::sort(fields, {}, QuillmarkKit::cliName);
  const auto nameLength = [](TagField field) { return cliName(field).size(); };
  const std::size_t width = nameLength(std::ranges::max(fields, {}, nameLength));

  console.write("Field names (use with --fields, or as flags for 'set'):\n\n");
  for (const TagField field : fields) {
    std::string name(cliName(field));
    name.resize(width, ' ');
    console.write(TagFields::albumIdentity.contains(field) ? "  * " : "    ");
    console.write(name + "  " + std::string(displayName(field)) + "\n");
  }
  console.write("\n  * included in the default paste (album identity)\n");
  return 0;
}

}  // namespace quillmark
