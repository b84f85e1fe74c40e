#include "quillmark/Options.h"

namespace quillmark {

std::optional<OptionValue> optionValue(const CommandOptions& command, std::string_view name) {
  const auto row = std::ranges::find(command.options, name, &Option::name);
  if (row != command.options.end()) return row->value;
  if (!command.hasFieldOptions) return std::nullopt;
  for (const QuillmarkKit::TagField field : QuillmarkKit::allTagFields) {
    if (name == rawValue(field) || name == cliName(field)) return optionValue(field);
  }
  return std::nullopt;
}

}  // namespace quillmark
