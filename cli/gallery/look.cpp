#include "cli/gallery/look.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "text/phrases.h"

namespace ombrix::cli {

namespace {

constexpr double kKeptDetail = 0.55;  // share of the original's spread that each channel must keep
constexpr double kNewLook = 4;        // mean difference worth another picture

class Statistics {
  public:
    void Add(double number) {
        count_ += 1;
        sum_ += number;
        squares_ += number * number;
    }
    double Mean() const { return sum_ / count_; }
    double Spread() const { return std::sqrt(std::max(0.0, squares_ / count_ - Mean() * Mean())); }

  private:
    double count_ = 0, sum_ = 0, squares_ = 0;
};

/// "a little darker", "darker", "much darker"
std::string Graded(double amount, double step, const std::string& word) {
    return (amount < step ? "a little " : amount > 4 * step ? "much " : "") + word;
}

}  // namespace

Look::Look(const host::Picture& picture) {
    const host::Picture::Lock pixels(picture);
    const auto onWhite = [](int channel, int alpha) { return 255 + (channel - 255) * alpha / 255; };
    for (int y = 0; y < picture.Height(); ++y) {
        const auto row = pixels.Row(y);
        if (picture.Depth() == 24) {
            bytes_.insert(bytes_.end(), row.begin(), row.end());
            continue;
        }
        for (std::size_t i = 0; i + 3 < row.size(); i += 4) {
            for (std::size_t channel = 1; channel <= 3; ++channel) {
                bytes_.push_back(static_cast<std::uint8_t>(onWhite(row[i + channel], row[i])));
            }
        }
    }

    std::array<Statistics, 3> channels;
    Statistics luma, colour;
    for (std::size_t i = 0; i + 2 < bytes_.size(); i += 3) {
        const auto [least, greatest] = std::minmax({bytes_[i], bytes_[i + 1], bytes_[i + 2]});
        for (std::size_t channel = 0; channel < 3; ++channel) channels[channel].Add(bytes_[i + channel]);
        luma.Add(0.299 * bytes_[i] + 0.587 * bytes_[i + 1] + 0.114 * bytes_[i + 2]);  // Rec. 601
        colour.Add(greatest - least);
    }
    for (std::size_t channel = 0; channel < 3; ++channel) {
        mean_[channel] = channels[channel].Mean();
        spread_[channel] = channels[channel].Spread();
    }
    luma_ = luma.Mean();
    contrast_ = luma.Spread();
    colour_ = colour.Mean();
}

double Look::DistanceTo(const Look& other) const {
    std::int64_t sum = 0;
    const std::size_t size = std::min(bytes_.size(), other.bytes_.size());
    for (std::size_t i = 0; i < size; ++i) sum += std::abs(bytes_[i] - other.bytes_[i]);
    return size == 0 ? 0 : static_cast<double>(sum) / static_cast<double>(size);
}

double Look::DetailOf(const Look& other) const {
    double least = std::numeric_limits<double>::infinity();
    for (std::size_t channel = 0; channel < 3; ++channel) {
        if (other.spread_[channel] >= 1) least = std::min(least, spread_[channel] / other.spread_[channel]);
    }
    return least;
}

std::string Look::ComparedWith(const Look& other) const {
    if (DistanceTo(other) < kSameLook) return "hardly different to the eye";
    std::vector<std::string> words;
    const double brighter = luma_ - other.luma_;
    if (std::abs(brighter) > 3) words.push_back(Graded(std::abs(brighter), 12, brighter > 0 ? "brighter" : "darker"));

    if (contrast_ < 1) {
        words.push_back("one even tone");
    } else if (const double more = contrast_ - other.contrast_; std::abs(more) > 3) {
        words.push_back(std::string("with ") + Graded(std::abs(more), 7, more > 0 ? "more contrast" : "less contrast"));
    }
    if (colour_ < 1) {
        words.push_back(other.colour_ < 1 ? "still in grey" : "all in grey");
        return text::Listed(words);
    }
    if (const double more = colour_ - other.colour_; std::abs(more) > 5) {
        words.push_back(Graded(std::abs(more), 12, more > 0 ? "more colourful" : "less colourful"));
    }
    // A tint moves one channel away from the others.
    constexpr std::array kTints = {std::array{"redder", "more cyan"}, std::array{"greener", "more magenta"},
                                   std::array{"bluer", "more yellow"}};
    double strongest = 0;
    std::string tint;
    for (std::size_t channel = 0; channel < 3; ++channel) {
        const auto moved = [&](std::size_t i) { return mean_[i % 3] - other.mean_[i % 3]; };
        const double away = moved(channel) - (moved(channel + 1) + moved(channel + 2)) / 2;
        if (std::abs(away) <= std::max(6.0, strongest)) continue;
        strongest = std::abs(away);
        tint = Graded(strongest, 15, kTints[channel][away > 0 ? 0 : 1]);
    }
    if (!tint.empty()) words.push_back(tint);
    return words.empty() ? "different in its details" : text::Listed(words);
}

std::vector<std::size_t> MostTelling(const std::vector<Look>& looks, const Look& original, std::size_t count) {
    std::vector<double> distance;  // to the nearest look shown so far, the original included
    std::vector<double> detail;
    for (const Look& look : looks) {
        distance.push_back(look.DistanceTo(original));
        detail.push_back(look.DetailOf(original));
    }
    // The greatest that passes the test; looks.size() when none does.
    const auto greatest = [&looks](const std::vector<double>& measure, auto&& test) {
        std::size_t found = looks.size();
        for (std::size_t i = 0; i < looks.size(); ++i) {
            if (test(i) && (found == looks.size() || measure[i] > measure[found])) found = i;
        }
        return found;
    };
    std::vector<std::size_t> chosen;
    while (chosen.size() < count) {
        const double enough = chosen.empty() ? kSameLook : kNewLook;
        std::size_t next =
            greatest(distance, [&](std::size_t i) { return distance[i] >= enough && detail[i] >= kKeptDetail; });
        if (next == looks.size() && chosen.empty()) {
            next = greatest(detail, [&](std::size_t i) { return distance[i] >= kNewLook; });
        }
        if (next == looks.size()) break;
        chosen.push_back(next);
        for (std::size_t i = 0; i < looks.size(); ++i) {
            distance[i] = std::min(distance[i], looks[i].DistanceTo(looks[next]));
        }
    }
    std::sort(chosen.begin(), chosen.end());
    return chosen;
}

}  // namespace ombrix::cli
