#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/base/EnumerationTable.h"

namespace ID3TagEditor {

// clang-format off
#define ID3_LANGUAGES(X) \
  X(aar) X(abk) X(ace) X(ach) X(ada) X(ady) X(afa) X(afh) X(afr) X(ain) X(aka) X(akk) X(alb) X(sqi) \
  X(ale) X(alg) X(alt) X(amh) X(ang) X(anp) X(apa) X(ara) X(arc) X(arg) X(arm) X(hye) X(arn) X(arp) \
  X(art) X(arw) X(asm_) X(ast) X(ath) X(aus) X(ava) X(ave) X(awa) X(aym) X(aze) X(bad) X(bai) X(bak) \
  X(bal) X(bam) X(ban) X(baq) X(eus) X(bas) X(bat) X(bej) X(bel) X(bem) X(ben) X(ber) X(bho) X(bih) \
  X(bik) X(bin) X(bis) X(bla) X(bnt) X(tib) X(bod) X(bos) X(bra) X(bre) X(btk) X(bua) X(bug) X(bul) \
  X(bur) X(mya) X(byn) X(cad) X(cai) X(car) X(cat) X(cau) X(ceb) X(cel) X(cze) X(ces) X(cha) X(chb) \
  X(che) X(chg) X(chi) X(zho) X(chk) X(chm) X(chn) X(cho) X(chp) X(chr) X(chu) X(chv) X(chy) X(cmc) \
  X(cnr) X(cop) X(cor) X(cos) X(cpe) X(cpf) X(cpp) X(cre) X(crh) X(crp) X(csb) X(cus) X(wel) X(cym) \
  X(dak) X(dan) X(dar) X(day) X(del) X(den) X(ger) X(deu) X(dgr) X(din) X(div) X(doi) X(dra) X(dsb) \
  X(dua) X(dum) X(dut) X(nld) X(dyu) X(dzo) X(efi) X(egy) X(eka) X(gre) X(ell) X(elx) X(eng) X(enm) \
  X(epo) X(est) X(ewe) X(ewo) X(fan) X(fao) X(per) X(fas) X(fat) X(fij) X(fil) X(fin) X(fiu) X(fon) \
  X(fre) X(fra) X(frm) X(fro) X(frr) X(frs) X(fry) X(ful) X(fur) X(gaa) X(gay) X(gba) X(gem) X(geo) \
  X(kat) X(gez) X(gil) X(gla) X(gle) X(glg) X(glv) X(gmh) X(goh) X(gon) X(gor) X(got) X(grb) X(grc) \
  X(grn) X(gsw) X(guj) X(gwi) X(hai) X(hat) X(hau) X(haw) X(heb) X(her) X(hil) X(him) X(hin) X(hit) \
  X(hmn) X(hmo) X(hrv) X(hsb) X(hun) X(hup) X(iba) X(ibo) X(ice) X(isl) X(ido) X(iii) X(ijo) X(iku) \
  X(ile) X(ilo) X(ina) X(inc) X(ind) X(ine) X(inh) X(ipk) X(ira) X(iro) X(ita) X(jav) X(jbo) X(jpn) \
  X(jpr) X(jrb) X(kaa) X(kab) X(kac) X(kal) X(kam) X(kan) X(kar) X(kas) X(kau) X(kaw) X(kaz) X(kbd) \
  X(kha) X(khi) X(khm) X(kho) X(kik) X(kin) X(kir) X(kmb) X(kok) X(kom) X(kon) X(kor) X(kos) X(kpe) \
  X(krc) X(krl) X(kro) X(kru) X(kua) X(kum) X(kur) X(kut) X(lad) X(lah) X(lam) X(lao) X(lat) X(lav) \
  X(lez) X(lim) X(lin) X(lit) X(lol) X(loz) X(ltz) X(lua) X(lub) X(lug) X(lui) X(lun) X(luo) X(lus) \
  X(mac) X(mkd) X(mad) X(mag) X(mah) X(mai) X(mak) X(mal) X(man) X(mao) X(mri) X(map) X(mar) X(mas) \
  X(may) X(msa) X(mdf) X(mdr) X(men) X(mga) X(mic) X(min) X(mis) X(mkh) X(mlg) X(mlt) X(mnc) X(mni) \
  X(mno) X(moh) X(mon) X(mos) X(mul) X(mun) X(mus) X(mwl) X(mwr) X(myn) X(myv) X(nah) X(nai) X(nap) \
  X(nau) X(nav) X(nbl) X(nde) X(ndo) X(nds) X(nep) X(new_) X(nia) X(nic) X(niu) X(nno) X(nob) X(nog) \
  X(non) X(nor) X(nqo) X(nso) X(nub) X(nwc) X(nya) X(nym) X(nyn) X(nyo) X(nzi) X(oci) X(oji) X(ori) \
  X(orm) X(osa) X(oss) X(ota) X(oto) X(paa) X(pag) X(pal) X(pam) X(pan) X(pap) X(pau) X(peo) X(phi) \
  X(phn) X(pli) X(pol) X(pon) X(por) X(pra) X(pro) X(pus) X(qaa) X(qtz) X(que) X(raj) X(rap) X(rar) \
  X(roa) X(roh) X(rom) X(rum) X(ron) X(run) X(rup) X(rus) X(sad) X(sag) X(sah) X(sai) X(sal) X(sam) \
  X(san) X(sas) X(sat) X(scn) X(sco) X(sel) X(sem) X(sga) X(sgn) X(shn) X(sid) X(sin) X(sio) X(sit) \
  X(sla) X(slo) X(slk) X(slv) X(sma) X(sme) X(smi) X(smj) X(smn) X(smo) X(sms) X(sna) X(snd) X(snk) \
  X(sog) X(som) X(son) X(sot) X(spa) X(srd) X(srn) X(srp) X(srr) X(ssa) X(ssw) X(suk) X(sun) X(sus) \
  X(sux) X(swa) X(swe) X(syc) X(syr) X(tah) X(tai) X(tam) X(tat) X(tel) X(tem) X(ter) X(tet) X(tgk) \
  X(tgl) X(tha) X(tig) X(tir) X(tiv) X(tkl) X(tlh) X(tli) X(tmh) X(tog) X(ton) X(tpi) X(tsi) X(tsn) \
  X(tso) X(tuk) X(tum) X(tup) X(tur) X(tut) X(tvl) X(twi) X(tyv) X(udm) X(uga) X(uig) X(ukr) X(umb) \
  X(und) X(urd) X(uzb) X(vai) X(ven) X(vie) X(vol) X(vot) X(wak) X(wal) X(war) X(was) X(wen) X(wln) \
  X(wol) X(xal) X(xho) X(yao) X(yap) X(yid) X(yor) X(ypk) X(zap) X(zbl) X(zen) X(zgh) X(zha) X(znd) \
  X(zul) X(zun) X(zxx) X(zza) X(unknown)
// clang-format on

/// The language of a comment or lyrics frame (ID3v2.3.0 §3.3): the codes of ISO 639-2, and `unknown` for any
/// other code. Where ISO 639-2 has two codes for a language, the bibliographic one comes before the
/// terminological one. A code that is a keyword of C++ has an underscore appended; its raw value has not.
enum class ID3FrameContentLanguage : std::uint16_t {
#define ID3_LANGUAGE(name) name,
  ID3_LANGUAGES(ID3_LANGUAGE)
#undef ID3_LANGUAGE
};

namespace detail {
constexpr std::string_view withoutUnderscore(std::string_view name) {
  return name.substr(0, name.find('_'));
}
}  // namespace detail

inline constexpr std::array languageCodes = std::to_array<std::string_view>({
#define ID3_LANGUAGE(name) detail::withoutUnderscore(#name),
    ID3_LANGUAGES(ID3_LANGUAGE)
#undef ID3_LANGUAGE
});
#undef ID3_LANGUAGES

inline constexpr auto allLanguages = platform::everyCase<ID3FrameContentLanguage, languageCodes.size()>();

/// Returns the lower-case three-letter code, or "unknown".
constexpr std::string_view rawValue(ID3FrameContentLanguage language) {
  return languageCodes[static_cast<std::size_t>(language)];
}

constexpr std::string_view caseName(ID3FrameContentLanguage language) {
  return rawValue(language);
}

constexpr std::optional<ID3FrameContentLanguage> languageFromRawValue(std::string_view code) {
  for (std::size_t i = 0; i < languageCodes.size(); ++i) {
    if (languageCodes[i] == code) return allLanguages[i];
  }
  return std::nullopt;
}

// clang-format off
#define ID3_GENRES(X) \
  X(blues) X(classicRock) X(country) X(dance) X(disco) X(funk) X(grunge) X(hipHop) X(jazz) X(metal) \
  X(newAge) X(oldies) X(other) X(pop) X(rAndB) X(rap) X(reggae) X(rock) X(techno) X(industrial) \
  X(alternative) X(ska) X(deathMetal) X(pranks) X(soundtrack) X(euroTechno) X(ambient) X(tripHop) \
  X(vocal) X(jazzFunk) X(fusion) X(trance) X(classical) X(instrumental) X(acid) X(house) X(game) \
  X(soundClip) X(gospel) X(noise) X(alternRock) X(bass) X(soul) X(punk) X(space) X(meditative) \
  X(instrumentalPop) X(instrumentalRock) X(ethnic) X(gothic) X(darkwave) X(technoIndustrial) \
  X(electronic) X(popFolk) X(eurodance) X(dream) X(southernRock) X(comedy) X(cult) X(gangsta) X(top40) \
  X(christianRap) X(popFunk) X(jungle) X(nativeAmerican) X(cabaret) X(newWave) X(psychadelic) X(rave) \
  X(showtunes) X(trailer) X(loFi) X(tribal) X(acidPunk) X(acidJazz) X(polka) X(retro) X(musical) \
  X(rockAndRoll) X(hardRock) X(remix) X(cover)
// clang-format on

/// The genres that a genre text can name by number (ID3v2.3.0 §4.2.1, "TCON"): 0 to 79 as in ID3v1, then the
/// refinements RX and CR. The raw value is the position.
enum class ID3Genre : std::uint8_t {
#define ID3_GENRE(name) name,
  ID3_GENRES(ID3_GENRE)
#undef ID3_GENRE
};

inline constexpr std::array genreNames = std::to_array<std::string_view>({
#define ID3_GENRE(name) #name,
    ID3_GENRES(ID3_GENRE)
#undef ID3_GENRE
});
#undef ID3_GENRES

inline constexpr auto allGenres = platform::everyCase<ID3Genre, genreNames.size()>();

constexpr std::int64_t rawValue(ID3Genre genre) {
  return static_cast<std::int64_t>(genre);
}

constexpr std::optional<ID3Genre> genreFromRawValue(std::int64_t raw) {
  if (raw < 0) return std::nullopt;
  return platform::caseAt<ID3Genre, genreNames.size()>(static_cast<std::size_t>(raw));
}

constexpr std::string_view caseName(ID3Genre genre) {
  return genreNames[static_cast<std::size_t>(genre)];
}

/// The picture formats that the engine distinguishes.
enum class ID3PictureFormat : std::uint8_t { jpeg, png };

inline constexpr std::array<ID3PictureFormat, 2> allPictureFormats{ID3PictureFormat::jpeg,
                                                                   ID3PictureFormat::png};

constexpr std::string_view caseName(ID3PictureFormat format) {
  return format == ID3PictureFormat::jpeg ? "jpeg" : "png";
}

// clang-format off
#define ID3_PICTURE_TYPES(X) \
  X(other) X(fileIcon) X(otherFileIcon) X(frontCover) X(backCover) X(leafletPage) X(media) \
  X(leadArtistLeadPerformerSoloist) X(artistPerformer) X(conductor) X(bandOrchestra) X(composer) \
  X(lyricistTextWriter) X(recordingLocation) X(duringRecording) X(duringPerformance) \
  X(movieVideoScreenCapture) X(aBrightColouredFish) X(illustration) X(bandArtistLogotype) \
  X(publisherStudioLogotype)
// clang-format on

/// The subject of an attached picture. The raw value is the picture type byte (ID3v2.3.0 §4.15).
enum class ID3PictureType : std::uint8_t {
#define ID3_PICTURE_TYPE(name) name,
  ID3_PICTURE_TYPES(ID3_PICTURE_TYPE)
#undef ID3_PICTURE_TYPE
};

inline constexpr std::array pictureTypeNames = std::to_array<std::string_view>({
#define ID3_PICTURE_TYPE(name) #name,
    ID3_PICTURE_TYPES(ID3_PICTURE_TYPE)
#undef ID3_PICTURE_TYPE
});
#undef ID3_PICTURE_TYPES

inline constexpr auto allPictureTypes = platform::everyCase<ID3PictureType, pictureTypeNames.size()>();

constexpr std::uint8_t rawValue(ID3PictureType type) {
  return static_cast<std::uint8_t>(type);
}

constexpr std::optional<ID3PictureType> pictureTypeFromRawValue(std::uint8_t raw) {
  return platform::caseAt<ID3PictureType, pictureTypeNames.size()>(raw);
}

constexpr std::string_view caseName(ID3PictureType type) {
  return pictureTypeNames[rawValue(type)];
}

/// The encoding of a frame's text. The raw value is the text-encoding byte (ID3v2.4.0 structure §4).
enum class ID3StringEncoding : std::uint8_t { ISO88591 = 0, UTF16 = 1, UTF8 = 3 };

inline constexpr std::array<ID3StringEncoding, 3> allStringEncodings{
    ID3StringEncoding::ISO88591, ID3StringEncoding::UTF16, ID3StringEncoding::UTF8};

constexpr std::uint8_t rawValue(ID3StringEncoding encoding) {
  return static_cast<std::uint8_t>(encoding);
}

constexpr std::optional<ID3StringEncoding> stringEncodingFromRawValue(std::uint8_t raw) {
  for (const ID3StringEncoding encoding : allStringEncodings) {
    if (rawValue(encoding) == raw) return encoding;
  }
  return std::nullopt;
}

}  // namespace ID3TagEditor
