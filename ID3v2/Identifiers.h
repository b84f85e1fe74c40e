#pragma once

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace ID3v2 {

/// An identifier of v2.2 and the one that frames of the same meaning have in v2.3, or in v2.4 where v2.3 has
/// none.
struct IdentifierPair {
  std::string_view three;
  std::string_view four;
};

// clang-format off
/// In the order of the first (ID3v2.2.0 §4, ID3v2.3.0 §4); those that the standards do not have are the ones
/// that music shops' programs write.
inline constexpr auto identifierPairs = std::to_array<IdentifierPair>({
    {"BUF", "RBUF"}, {"CNT", "PCNT"}, {"COM", "COMM"}, {"CRA", "AENC"}, {"EQU", "EQUA"}, {"ETC", "ETCO"},
    {"GEO", "GEOB"}, {"GP1", "GRP1"}, {"IPL", "IPLS"}, {"LNK", "LINK"}, {"MCI", "MCDI"}, {"MLL", "MLLT"},
    {"MVI", "MVIN"}, {"MVN", "MVNM"}, {"PCS", "PCST"}, {"PIC", "APIC"}, {"POP", "POPM"}, {"REV", "RVRB"},
    {"RVA", "RVAD"}, {"SLT", "SYLT"}, {"STC", "SYTC"}, {"TAL", "TALB"}, {"TBP", "TBPM"}, {"TCM", "TCOM"},
    {"TCO", "TCON"}, {"TCP", "TCMP"}, {"TCR", "TCOP"}, {"TCT", "TCAT"}, {"TDA", "TDAT"}, {"TDR", "TDRL"},
    {"TDS", "TDES"}, {"TDY", "TDLY"}, {"TEN", "TENC"}, {"TFT", "TFLT"}, {"TID", "TGID"}, {"TIM", "TIME"},
    {"TKE", "TKEY"}, {"TKW", "TKWD"}, {"TLA", "TLAN"}, {"TLE", "TLEN"}, {"TMT", "TMED"}, {"TOA", "TOPE"},
    {"TOF", "TOFN"}, {"TOL", "TOLY"}, {"TOR", "TORY"}, {"TOT", "TOAL"}, {"TP1", "TPE1"}, {"TP2", "TPE2"},
    {"TP3", "TPE3"}, {"TP4", "TPE4"}, {"TPA", "TPOS"}, {"TPB", "TPUB"}, {"TRC", "TSRC"}, {"TRD", "TRDA"},
    {"TRK", "TRCK"}, {"TS2", "TSO2"}, {"TSA", "TSOA"}, {"TSC", "TSOC"}, {"TSI", "TSIZ"}, {"TSP", "TSOP"},
    {"TSS", "TSSE"}, {"TST", "TSOT"}, {"TT1", "TIT1"}, {"TT2", "TIT2"}, {"TT3", "TIT3"}, {"TXT", "TEXT"},
    {"TXX", "TXXX"}, {"TYE", "TYER"}, {"UFI", "UFID"}, {"ULT", "USLT"}, {"WAF", "WOAF"}, {"WAR", "WOAR"},
    {"WAS", "WOAS"}, {"WCM", "WCOM"}, {"WCP", "WCOP"}, {"WFD", "WFED"}, {"WPB", "WPUB"}, {"WXX", "WXXX"},
});
// clang-format on
static_assert(std::ranges::is_sorted(identifierPairs, {}, &IdentifierPair::three));

/// The four letters for three of v2.2; nothing where there are none.
constexpr std::optional<std::string_view> fourLettersFor(std::string_view three) {
  const auto found = std::ranges::lower_bound(identifierPairs, three, {}, &IdentifierPair::three);
  if (found == identifierPairs.end() || found->three != three) return std::nullopt;
  return found->four;
}

/// How a frame's content is laid out: the alternatives of `Content`.
enum class ContentKind { opaque, text, userText, languageText, picture, url, chapter, tableOfContents };

/// By the four letters.
constexpr ContentKind kindOf(std::string_view identifier) {
  struct Row {
    std::string_view identifier;
    ContentKind kind;
  };
  // The last three are texts in spite of their first letter.
  constexpr auto rows = std::to_array<Row>({{"TXXX", ContentKind::userText},
                                            {"WXXX", ContentKind::opaque},
                                            {"COMM", ContentKind::languageText},
                                            {"USLT", ContentKind::languageText},
                                            {"APIC", ContentKind::picture},
                                            {"CHAP", ContentKind::chapter},
                                            {"CTOC", ContentKind::tableOfContents},
                                            {"GRP1", ContentKind::text},
                                            {"MVIN", ContentKind::text},
                                            {"MVNM", ContentKind::text}});
  if (const auto row = std::ranges::find(rows, identifier, &Row::identifier); row != rows.end()) {
    return row->kind;
  }
  if (identifier.starts_with('T')) return ContentKind::text;
  if (identifier.starts_with('W')) return ContentKind::url;
  return ContentKind::opaque;
}

}  // namespace ID3v2
