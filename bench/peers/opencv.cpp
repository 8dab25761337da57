// OpenCV. Its matrices work from one picture to another, also where the line is in place. Its masks choose pixels and
// do not weigh them; its mix of two pictures takes no mask.
#include <map>
#include <memory>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#include <string>

#include "bench/blend_modes.h"
#include "bench/peers/peers.h"
#include "bench/tone_effects.h"

namespace ombrix::bench {
namespace {

cv::Mat MatOf(const BenchPicture& picture) {
    return {picture.Extent().height, picture.Extent().width, CV_8UC4, picture.Bytes(), picture.RowBytes()};
}

/// Source, fill and destination are pictures that exist, so nothing is allocated.
struct Mats {
    cv::Mat source;
    cv::Mat fill;
    cv::Mat mask;  ///< of one channel
    cv::Mat grey;  ///< of one channel, from the first run on
    cv::Mat destination;
};

using Operation = void (*)(Mats& mats);
using Operations = std::map<std::string, Operation>;

cv::Mat GreyMatrix(double red, double green, double blue) {
    return (cv::Mat_<float>(4, 4) << 1, 0, 0, 0, 0, red, green, blue, 0, red, green, blue, 0, red, green, blue);
}

cv::Mat SepiaMatrix() {
    return (cv::Mat_<float>(4, 5) << 1, 0, 0, 0, 0,  //
            0, 0.299, 0.587, 0.114, 28.68,           //
            0, 0.299, 0.587, 0.114, -8.16,           //
            0, 0.299, 0.587, 0.114, -33.15);
}

const cv::Mat& MapTable() {
    static const cv::Mat table = [] {
        const MapTables tables;
        cv::Mat all(1, 256, CV_8UC4);
        for (int i = 0; i < 256; ++i) {
            all.at<cv::Vec4b>(i) = {static_cast<std::uint8_t>(i), tables.red[i], tables.green[i], tables.blue[i]};
        }
        return all;
    }();
    return table;
}

const Operations kToneOperations = {
    {"colour filter", [](Mats& m) { cv::add(m.source, cv::Scalar(0, 40, -30, 7), m.destination); }},
    {"brightness", [](Mats& m) { cv::add(m.source, cv::Scalar(0, 25, 25, 25), m.destination); }},
    {"invert", [](Mats& m) { cv::bitwise_not(m.source, m.destination); }},
    {"contrast", [](Mats& m) { m.source.convertTo(m.destination, -1, 1.5625, 128 - 1.5625 * 128); }},
    {"map", [](Mats& m) { cv::LUT(m.source, MapTable(), m.destination); }},
    {"grey NTSC_PAL",
     [](Mats& m) {
         cv::cvtColor(m.source, m.grey, cv::COLOR_BGRA2GRAY);
         cv::cvtColor(m.grey, m.destination, cv::COLOR_GRAY2BGRA);
     }},
    {"grey ITU_R", [](Mats& m) { cv::transform(m.source, m.destination, GreyMatrix(0.2125, 0.7154, 0.0721)); }},
    {"grey AVERAGE", [](Mats& m) { cv::transform(m.source, m.destination, GreyMatrix(1 / 3.0, 1 / 3.0, 1 / 3.0)); }},
    {"grey WEIGHTEDAVERAGE",
     [](Mats& m) { cv::transform(m.source, m.destination, GreyMatrix(3 / 9.0, 4 / 9.0, 2 / 9.0)); }},
    {"sepia", [](Mats& m) { cv::transform(m.source, m.destination, SepiaMatrix()); }},
};

const Operations kMaskedOperations = {
    {"colour filter", [](Mats& m) { cv::add(m.source, cv::Scalar(0, 40, -30, 7), m.destination, m.mask); }},
    {"brightness", [](Mats& m) { cv::add(m.source, cv::Scalar(0, 25, 25, 25), m.destination, m.mask); }},
    {"invert", [](Mats& m) { cv::bitwise_not(m.source, m.destination, m.mask); }},
};

const Operations kBlendOperations = {
    {"normal", [](Mats& m) { m.fill.copyTo(m.destination); }},
    {"multiply", [](Mats& m) { cv::multiply(m.source, m.fill, m.destination, 1 / 256.0); }},
    {"darken", [](Mats& m) { cv::min(m.source, m.fill, m.destination); }},
    {"lighten", [](Mats& m) { cv::max(m.source, m.fill, m.destination); }},
    {"difference", [](Mats& m) { cv::absdiff(m.source, m.fill, m.destination); }},
    {"linear dodge", [](Mats& m) { cv::add(m.source, m.fill, m.destination); }},
    {"linear burn", [](Mats& m) { cv::addWeighted(m.source, 1, m.fill, 1, -255, m.destination); }},
    {"linear light", [](Mats& m) { cv::addWeighted(m.source, 1, m.fill, 2, -255, m.destination); }},
    {"add", [](Mats& m) { cv::add(m.source, m.fill, m.destination); }},
};

const Operations kMixedOperations = {
    {"normal", [](Mats& m) { cv::addWeighted(m.source, 1 - kMixedOpacity, m.fill, kMixedOpacity, 0, m.destination); }},
};

const Operations* OperationsOf(const std::string& table) {
    static const std::map<std::string, const Operations*> operations = {{kInPlace, &kToneOperations},
                                                                        {kIntoNew, &kToneOperations},
                                                                        {kInPlaceMasked, &kMaskedOperations},
                                                                        {kBlend, &kBlendOperations},
                                                                        {kBlendMixed, &kMixedOperations}};
    const auto found = operations.find(table);
    return found == operations.end() ? nullptr : found->second;
}

bool NeedsTwoPictures(const std::string& effect) {
    return effect == "sepia" || (effect.starts_with("grey") && effect != "grey NTSC_PAL");
}

}  // namespace

std::function<void()> OpenCvCounterpart(const LineName& line, PictureSet& pictures) {
    const Operations* operations = OperationsOf(line.table);
    if (!operations || !operations->contains(line.measured)) return nullptr;
    cv::setNumThreads(1);
    const auto mats = std::make_shared<Mats>();
    mats->source = MatOf(pictures.source);
    mats->fill = MatOf(pictures.fill);
    const bool inPlace = line.table == kInPlace || line.table == kInPlaceMasked;
    mats->destination = inPlace && !NeedsTwoPictures(line.measured) ? mats->source : MatOf(pictures.destination);
    if (line.table == kInPlaceMasked) cv::extractChannel(MatOf(pictures.mask), mats->mask, 1);
    const Operation operation = operations->at(line.measured);
    return [mats, operation] { operation(*mats); };
}

}  // namespace ombrix::bench
