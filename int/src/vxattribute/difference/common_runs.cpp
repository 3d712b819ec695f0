// The way from one sequence to the other is a path in a grid from (0, 0) to the ends of both. A
// step to the right leaves out an element of `a`, a step down one of `b`, and a diagonal step takes
// an element that both have. Diagonal k has the points with x - y == k. After d steps that are not
// diagonal, the diagonals -d, -d + 2, ..., d are reached; of each, the farthest point counts.

#include "vxattribute/difference/common_runs_internal.h"

#include <algorithm>

namespace vxattribute::impl {

namespace {

constexpr int maxDifferences = 1000;

using Index = long long;

struct Point {
    Index x;
    Index y;
};

/// The search from one start, for up to `maxDifferences` steps that are not diagonal.
class Search {
  public:
    Search(std::span<unsigned int const> a, std::span<unsigned int const> b, long long & stepsLeft)
        : m_a(a), m_b(b), m_stepsLeft(stepsLeft) {}

    /// Searches until the end of both sequences or a limit is reached. Returns the end of the best
    /// way, and appends its runs. The indexes of the runs count from `origin`.
    Point run(Point origin, std::vector<CommonRun> & runs) {
        while (!m_isAtEnd && m_rows <= maxDifferences && add_row()) {
        }
        Best const best = farthest();
        append_runs(best, origin, runs);
        return {m_x[place(best.d, best.k)], m_x[place(best.d, best.k)] - best.k};
    }

  private:
    struct Best {
        int d;
        int k;
    };

    /// The index in `m_x` of diagonal k after d steps: row d has d + 1 diagonals.
    static std::size_t place(int d, int k) noexcept {
        return static_cast<std::size_t>(d) * static_cast<std::size_t>(d + 1) / 2 +
               static_cast<std::size_t>(d + k) / 2;
    }

    /// Where the way to diagonal k of row d > 0 comes from: true from above, diagonal k + 1.
    bool is_from_above(int d, int k) const noexcept {
        return k == -d || (k != d && m_x[place(d - 1, k - 1)] < m_x[place(d - 1, k + 1)]);
    }

    /// The x of the way after its last step that is not diagonal.
    Index x_after_step(int d, int k) const noexcept {
        if (d == 0) {
            return 0;
        }
        return is_from_above(d, k) ? m_x[place(d - 1, k + 1)] : m_x[place(d - 1, k - 1)] + 1;
    }

    /// One step more on all diagonals. False when no steps are left; the row is incomplete then.
    bool add_row() {
        int const d = m_rows;
        for (int k = -d; k <= d; k += 2) {
            Index const start = x_after_step(d, k);
            Index const x = follow_diagonal(start, start - k);
            m_x.push_back(x);
            m_stepsLeft -= 1 + (x - start);
            if (m_stepsLeft < 0 && d != 0) {
                return false;
            }
            m_isAtEnd = m_isAtEnd || (x == size_of(m_a) && x - k == size_of(m_b));
        }
        ++m_rows;
        return true;
    }

    Index follow_diagonal(Index x, Index y) const noexcept {
        while (x < size_of(m_a) && y < size_of(m_b) &&
               m_a[static_cast<std::size_t>(x)] == m_b[static_cast<std::size_t>(y)]) {
            ++x;
            ++y;
        }
        return x;
    }

    /// The diagonal of the last complete row that has come farthest within both sequences.
    Best farthest() const noexcept {
        int const d = m_rows - 1;
        Best best{d, 0};
        Index bestSum = -1;
        for (int k = -d; k <= d; k += 2) {
            Index const x = m_x[place(d, k)];
            if (x <= size_of(m_a) && x - k <= size_of(m_b) && x + x - k > bestSum) {
                best.k = k;
                bestSum = x + x - k;
            }
        }
        return best;
    }

    void append_runs(Best best, Point origin, std::vector<CommonRun> & runs) const {
        auto const first = static_cast<std::ptrdiff_t>(runs.size());
        for (int d = best.d, k = best.k; d >= 0; --d) {
            Index const start = x_after_step(d, k);
            if (Index const size = m_x[place(d, k)] - start; size != 0) {
                runs.push_back({static_cast<unsigned int>(origin.x + start),
                                static_cast<unsigned int>(origin.y + start - k),
                                static_cast<unsigned int>(size)});
            }
            if (d != 0) {
                k += is_from_above(d, k) ? 1 : -1;
            }
        }
        std::reverse(runs.begin() + first, runs.end());
    }

    static Index size_of(std::span<unsigned int const> numbers) noexcept {
        return static_cast<Index>(numbers.size());
    }

    std::span<unsigned int const> m_a;
    std::span<unsigned int const> m_b;
    long long & m_stepsLeft;
    std::vector<Index> m_x; // the farthest x of each diagonal, row by row
    int m_rows = 0;         // complete ones
    bool m_isAtEnd = false;
};

} // namespace

std::vector<CommonRun> common_runs(std::span<unsigned int const> a, std::span<unsigned int const> b,
                                   long long & stepsLeft) {
    std::vector<CommonRun> runs;
    Point at{0, 0};
    while (stepsLeft > 0 && at.x != static_cast<Index>(a.size()) &&
           at.y != static_cast<Index>(b.size())) {
        Point const end = Search(a.subspan(static_cast<std::size_t>(at.x)),
                                 b.subspan(static_cast<std::size_t>(at.y)), stepsLeft)
                              .run(at, runs);
        at = {at.x + end.x, at.y + end.y};
    }
    return runs;
}

} // namespace vxattribute::impl
