#include "controls/view/gone_places.h"

#include <algorithm>

namespace orvane::controls {

bool GonePlaces::Contains(Place place) const {
  return std::ranges::binary_search(m_places, place);
}

GonePlaces::Place GonePlaces::Whole(Place seen) const {
  // Each that went in front of the place moved it by one.
  std::size_t nFirst = 0;
  std::size_t nBehind = m_places.size();
  while (nFirst < nBehind) {
    const std::size_t nMiddle = (nFirst + nBehind) / 2;
    if (m_places[nMiddle] - static_cast<Place>(nMiddle) <= seen) {
      nFirst = nMiddle + 1;
    } else {
      nBehind = nMiddle;
    }
  }
  return seen + static_cast<Place>(nFirst);
}

std::optional<GonePlaces::Place> GonePlaces::Seen(Place whole) const {
  const auto gone = std::ranges::lower_bound(m_places, whole);
  if (gone != m_places.end() && *gone == whole) return std::nullopt;
  return whole - (gone - m_places.begin());
}

void GonePlaces::Add(std::span<const Place> places) {
  if (places.empty()) return;
  m_places.insert(std::ranges::upper_bound(m_places, places.front()), places.begin(), places.end());
}

}  // namespace orvane::controls
