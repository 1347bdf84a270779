// The places at which rows stood that are to be seen no more, deleted ones for instance: how those
// that are seen are counted without them. Part of the row model; values, for any thread.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "platform/ado/recordset.h"

namespace orvane::controls {

class GonePlaces {
 public:
  using Place = platform::RowIndex;

  GonePlaces() = default;
  /// In ascending order.
  explicit GonePlaces(std::vector<Place> places) : m_places(std::move(places)) {}

  bool Empty() const { return m_places.empty(); }
  Place Count() const { return static_cast<Place>(m_places.size()); }
  bool Contains(Place place) const;
  /// The place, counted with those that are gone, of what is seen at this one.
  Place Whole(Place seen) const;
  /// Where that place is seen; none where it is gone.
  std::optional<Place> Seen(Place whole) const;
  /// Places one behind the other, none of which is gone yet.
  void Add(std::span<const Place> places);

 private:
  std::vector<Place> m_places;
};

}  // namespace orvane::controls
