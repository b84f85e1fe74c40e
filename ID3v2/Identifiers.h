#pragma once

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace ID3v2 {

/// An identifier of v2.2, and the identifier of the same frame in v2.3, or in v2.4 if v2.3 has none.
struct IdentifierPair {
  std::string_view three;
  std::string_view four;
};

// clang-format off
/// Sorted by the identifiers of v2.2 (ID3v2.2.0 §4, ID3v2.3.0 §4). Pairs that are not in the standards are
/// written by the programs of music shops.
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

/// Returns the identifier of four letters for one of v2.2, or nothing if there is none.
constexpr std::optional<std::string_view> fourLettersFor(std::string_view three) {
  const auto found = std::ranges::lower_bound(identifierPairs, three, {}, &IdentifierPair::three);
  if (found == identifierPairs.end() || found->three != three) return std::nullopt;
  return found->four;
}

/// The layout of a frame's content. There is one for each alternative of `Content` except `Unread`.
enum class ContentKind { opaque, text, userText, languageText, picture, url, chapter, tableOfContents };

/// Returns the layout of the frames with this identifier of four letters.
constexpr ContentKind kindOf(std::string_view identifier) {
  struct Row {
    std::string_view identifier;
    ContentKind kind;
  };
  // The last three are texts although they do not begin with T.
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
