#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/base/EnumerationTable.h"

namespace ID3TagEditor {

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

}  // namespace ID3TagEditor
