#include "qt/reading_order.h"

#include <algorithm>
#include <functional>
#include <numeric>

namespace ledgertree::qt {

namespace {

using Places = std::vector<std::size_t>;

/// Indices in runs whose spans don't overlap, in ascending order of the spans.
std::vector<Places> separate(Places places, const std::function<std::pair<int, int>(std::size_t)>& span) {
  std::stable_sort(places.begin(), places.end(),
                   [&](std::size_t a, std::size_t b) { return span(a).first < span(b).first; });
  std::vector<Places> runs;
  int end = 0;
  for (const std::size_t place : places) {
    const auto [from, to] = span(place);
    if (runs.empty() || from >= end) {
      runs.emplace_back();
      end = to;
    }
    runs.back().push_back(place);
    end = std::max(end, to);
  }
  return runs;
}

void append(const Places& places, const std::vector<QRect>& rectangles, Places& order) {
  if (places.size() == 1) return order.push_back(places.front());
  const auto rows = separate(places, [&](std::size_t place) {
    return std::pair(rectangles[place].top(), rectangles[place].top() + rectangles[place].height());
  });
  if (rows.size() > 1) {
    for (const Places& row : rows) append(row, rectangles, order);
    return;
  }
  // Mirrored, so that ascending order runs from the right.
  const auto columns = separate(places, [&](std::size_t place) {
    return std::pair(-(rectangles[place].left() + rectangles[place].width()), -rectangles[place].left());
  });
  if (columns.size() > 1) {
    for (const Places& column : columns) append(column, rectangles, order);
    return;
  }
  Places rest = places;
  std::stable_sort(rest.begin(), rest.end(), [&](std::size_t a, std::size_t b) {
    return std::pair(rectangles[a].top(), -rectangles[a].right()) <
           std::pair(rectangles[b].top(), -rectangles[b].right());
  });
  order.insert(order.end(), rest.begin(), rest.end());
}

}  // namespace

std::vector<std::size_t> readingOrder(const std::vector<QRect>& rectangles) {
  Places all(rectangles.size());
  std::iota(all.begin(), all.end(), std::size_t{0});
  Places order;
  if (!all.empty()) append(all, rectangles, order);
  return order;
}

}  // namespace ledgertree::qt
