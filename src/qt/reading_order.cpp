#include "qt/reading_order.h"

#include <algorithm>
#include <functional>
#include <numeric>

namespace ledgertree::qt {

namespace {

using Indices = std::vector<std::size_t>;

/// Indices in runs whose spans don't overlap, in ascending order of the spans.
std::vector<Indices> separate(Indices indices, const std::function<std::pair<int, int>(std::size_t)>& span) {
  std::stable_sort(indices.begin(), indices.end(),
                   [&](std::size_t a, std::size_t b) { return span(a).first < span(b).first; });
  std::vector<Indices> runs;
  int end = 0;
  for (const std::size_t index : indices) {
    const auto [from, to] = span(index);
    if (runs.empty() || from >= end) {
      runs.emplace_back();
      end = to;
    }
    runs.back().push_back(index);
    end = std::max(end, to);
  }
  return runs;
}

void append(const Indices& indices, const std::vector<QRect>& rectangles, Indices& order) {
  if (indices.size() == 1) return order.push_back(indices.front());
  const auto rows = separate(indices, [&](std::size_t index) {
    return std::pair(rectangles[index].top(), rectangles[index].top() + rectangles[index].height());
  });
  if (rows.size() > 1) {
    for (const Indices& row : rows) append(row, rectangles, order);
    return;
  }
  // Mirrored, so that ascending order runs from the right.
  const auto columns = separate(indices, [&](std::size_t index) {
    return std::pair(-(rectangles[index].left() + rectangles[index].width()), -rectangles[index].left());
  });
  if (columns.size() > 1) {
    for (const Indices& column : columns) append(column, rectangles, order);
    return;
  }
  Indices rest = indices;
  std::stable_sort(rest.begin(), rest.end(), [&](std::size_t a, std::size_t b) {
    return std::pair(rectangles[a].top(), -rectangles[a].right()) <
           std::pair(rectangles[b].top(), -rectangles[b].right());
  });
  order.insert(order.end(), rest.begin(), rest.end());
}

}  // namespace

std::vector<std::size_t> readingOrder(const std::vector<QRect>& rectangles) {
  Indices all(rectangles.size());
  std::iota(all.begin(), all.end(), std::size_t{0});
  Indices order;
  if (!all.empty()) append(all, rectangles, order);
  return order;
}

}  // namespace ledgertree::qt
