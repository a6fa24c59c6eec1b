// wav.cpp - qxvtool wav: what a sound holds, sounds at other widths and rates, and their picture.

#include "qxvtool/commands/commands.h"
#include "qxvtool/support/failure.h"
#include "qxvtool/support/files.h"
#include "qxvtool/support/picture.h"
#include "qxvtool/support/sound.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>

namespace {

using tool::Sound;
using tool::Value;

struct InfoRequest {
  std::vector<std::string> files;
};

struct ConvertRequest {
  std::string source, target;
  std::optional<int> bits, channel;
  double from = 0;
  std::optional<double> length;
};

struct ResampleRequest {
  std::string source, target;
  int rate = 0;
};

struct PlotRequest {
  std::string source, target;
  std::string size = "800x300";
};

Value::Record Describe(const std::string& path) {
  const tool::SoundHead head = tool::ReadSoundHead(path);
  return {{"format_tag", head.format.wFormatTag},
          {"channels", head.Channels()},
          {"rate", head.Rate()},
          {"bits", head.Bits()},
          {"frames", head.frames},
          {"seconds", head.Seconds()},
          {"bytes", head.bytes}};
}

void RunInfo(const InfoRequest& request, tool::Context& context) {
  const auto text = [](const std::string& path, const Value::Record& record) { return path + '\n' + tool::Lines(record, "  "); };
  context.AnswerEach("file", request.files, Describe, text);
}

// Writes as many bits as were asked for, or as near to those of the source as can be written.
void Answer(const std::string& path, Sound sound, tool::Context& context) {
  sound.bits = std::clamp(sound.bits, 16, 32);
  tool::WriteSound(path, sound);
  const double seconds = static_cast<double>(sound.frames) / sound.rate;
  const Value::Record answer = {{"file", path},       {"channels", sound.channels}, {"rate", sound.rate},
                                {"bits", sound.bits}, {"frames", sound.frames},     {"seconds", seconds}};
  context.Answer(answer, path + ": " + tool::SoundText(sound.rate, sound.channels, sound.bits, seconds) + '\n');
}

Sound ReadForWriting(const std::string& path) {
  Sound sound = tool::ReadSound(path);
  if (sound.rate <= 0) {
    throw tool::Failure(path, "has no sample rate");
  }
  return sound;
}

void RunConvert(const ConvertRequest& request, tool::Context& context) {
  Sound sound = ReadForWriting(request.source);
  const auto frameAt = [&](double seconds) {
    return static_cast<int>(std::clamp(seconds * sound.rate, 0.0, sound.frames * 1.0));
  };
  const int first = frameAt(request.from);
  const int last = request.length ? frameAt(request.from + *request.length) : sound.frames;
  const auto place = [&](int frame) { return sound.samples.begin() + static_cast<std::ptrdiff_t>(frame) * sound.channels; };
  sound.samples = std::vector<float>(place(first), place(last));
  sound.frames = last - first;
  sound.bits = request.bits.value_or(sound.bits);
  if (request.channel) {
    if (*request.channel < 1 || *request.channel > sound.channels) {
      throw tool::Failure(request.source, "has no channel " + std::to_string(*request.channel) + " (there are " +
                                              std::to_string(sound.channels) + ")");
    }
    sound.samples = tool::ChannelOf(sound, *request.channel - 1);
    sound.channels = 1;
  }
  Answer(request.target, std::move(sound), context);
}

// A call of QXVReSample begins anew and counts samples times rate in 32 bits, so a long channel goes through in blocks. A block
// is a whole number of periods, behind which source and target meet again, and the one sample that its last straight line leads
// to.
std::vector<float> Resampled(const std::vector<float>& source, int sourceRate, int targetRate) {
  const int common = std::gcd(sourceRate, targetRate);
  const std::size_t sourcePeriod = static_cast<std::size_t>(sourceRate / common),
                    targetPeriod = static_cast<std::size_t>(targetRate / common);
  const std::size_t mostSamples = 0x7FFFFFFF / targetPeriod;
  const std::size_t periods = mostSamples > sourcePeriod ? (mostSamples - 1) / sourcePeriod : 0;
  if (periods == 0 && source.size() > mostSamples) {
    throw tool::Failure(std::to_string(sourceRate) + " to " + std::to_string(targetRate) + " Hz",
                        "the rates have no common divisor that is large enough for a sound of this length");
  }
  const std::size_t step = periods == 0 ? source.size() : periods * sourcePeriod;
  std::vector<float> target;
  for (std::size_t at = 0; at < source.size(); at += step) {
    const std::size_t count = std::min(step + 1, source.size() - at);
    std::vector<float> block(count * targetPeriod / sourcePeriod + 1);
    int made = 0;
    QXVReSample(source.data() + at, static_cast<int>(sourcePeriod), static_cast<int>(count), block.data(),
                static_cast<int>(targetPeriod), made);
    const bool isLast = at + step >= source.size();
    const std::size_t kept = isLast ? static_cast<std::size_t>(made) : periods * targetPeriod;
    target.insert(target.end(), block.begin(), block.begin() + static_cast<std::ptrdiff_t>(kept));
  }
  return target;
}

void RunResample(const ResampleRequest& request, tool::Context& context) {
  Sound sound = ReadForWriting(request.source);
  const auto channels = static_cast<std::size_t>(sound.channels);
  std::vector<float> samples;
  for (std::size_t channel = 0; channel < channels; ++channel) {
    const std::vector<float> made = Resampled(tool::ChannelOf(sound, static_cast<int>(channel)), sound.rate, request.rate);
    samples.resize(made.size() * channels);
    for (std::size_t i = 0; i < made.size(); ++i) {
      samples[i * channels + channel] = made[i];
    }
  }
  sound.frames = static_cast<int>(samples.size() / channels);
  sound.samples = std::move(samples);
  sound.rate = request.rate;
  Answer(request.target, std::move(sound), context);
}

// A channel in its part of the picture: for each column the span from the lowest to the highest of its samples.
void Plot(tool::Canvas& canvas, const std::vector<float>& samples, double top, double height) {
  constexpr tool::Colour kAxis{70, 80, 95}, kWave{90, 200, 170}, kClipped{235, 95, 80};
  const int width = canvas.GetSize().width;
  const double middle = top + height / 2, scale = height / 2 - 2;
  canvas.Line(0, middle, width, middle, 1, kAxis);
  for (int x = 0; x < width; ++x) {
    const std::size_t first = samples.size() * static_cast<std::size_t>(x) / static_cast<std::size_t>(width);
    const std::size_t behind = samples.size() * static_cast<std::size_t>(x + 1) / static_cast<std::size_t>(width);
    const std::size_t last = std::min(std::max(behind, first + 1) + 1, samples.size());  // one more: spans touch their neighbours
    if (first >= last) {
      continue;
    }
    const auto [low, high] = std::minmax_element(samples.begin() + static_cast<std::ptrdiff_t>(first),
                                                 samples.begin() + static_cast<std::ptrdiff_t>(last));
    const bool isClipped = *low <= -1 || *high >= 1 - 1.0 / 32768;
    const double clampedHigh = std::clamp(static_cast<double>(*high), -1.0, 1.0),
                 clampedLow = std::clamp(static_cast<double>(*low), -1.0, 1.0);
    canvas.Line(x, middle - clampedHigh * scale, x, middle - clampedLow * scale, 1, isClipped ? kClipped : kWave);
  }
}

void RunPlot(const PlotRequest& request, tool::Context& context) {
  const tool::Size size = tool::ParseSize(request.size);
  (void)tool::LayoutOfWrittenFile(request.target);
  const Sound sound = tool::ReadSound(request.source);
  tool::Canvas canvas(size, {24, 28, 36});
  const double height = static_cast<double>(size.height) / sound.channels;
  for (int channel = 0; channel < sound.channels; ++channel) {
    Plot(canvas, tool::ChannelOf(sound, channel), channel * height, height);
  }
  canvas.Save(request.target);
  const Value::Record answer = {{"file", request.target},
                                {"width", size.width},
                                {"height", size.height},
                                {"channels", sound.channels},
                                {"frames", sound.frames}};
  context.Answer(answer, request.target + ": " + std::to_string(sound.frames) + " frames, a band for each of " +
                             std::to_string(sound.channels) + " channel(s), from the top\n");
}

void AddInfo(CLI::App& wav, tool::Context& context) {
  const auto request = std::make_shared<InfoRequest>();
  CLI::App* command = tool::NewCommand(wav, "info", "What WAV files hold",
                                       "  qxvtool wav info voice.wav\n"
                                       "  qxvtool wav info *.wav --json");
  command->add_option("FILE", request->files, "RIFF/WAVE files")->required();
  tool::AddJson(command, context);
  tool::OnCall(command, request, context, RunInfo);
}

void AddConvert(CLI::App& wav, tool::Context& context) {
  const auto request = std::make_shared<ConvertRequest>();
  CLI::App* command = tool::NewCommand(wav, "convert", "A sound at another width, one channel of it, or a part of it",
                                       "  qxvtool wav convert take.wav take24.wav --bits 24\n"
                                       "  qxvtool wav convert stereo.wav left.wav --channel 1\n"
                                       "  qxvtool wav convert long.wav part.wav --from 12.5 --length 3");
  command->add_option("IN", request->source, "A WAV file of 8, 16, 24 or 32 bits")->required();
  command->add_option("OUT", request->target, "The file to be written; samples beyond full scale are clipped")->required();
  command->add_option("--bits", request->bits, "16, 24 or 32 (floats); without it as many as there are, 16 for 8")
      ->check(CLI::IsMember({16, 24, 32}));
  command->add_option("--channel", request->channel, "This channel alone, from 1 on");
  command->add_option("--from", request->from, "Seconds to begin behind")->check(CLI::NonNegativeNumber);
  command->add_option("--length", request->length, "Seconds to take")->check(CLI::NonNegativeNumber);
  tool::AddJson(command, context);
  tool::OnCall(command, request, context, RunConvert);
}

void AddResample(CLI::App& wav, tool::Context& context) {
  const auto request = std::make_shared<ResampleRequest>();
  CLI::App* command = tool::NewCommand(wav, "resample", "A sound at another rate, by straight lines between samples",
                                       "  qxvtool wav resample cd.wav film.wav --rate 48000");
  command->add_option("IN", request->source, "A WAV file of 8, 16, 24 or 32 bits")->required();
  command->add_option("OUT", request->target, "The file to be written")->required();
  command->add_option("--rate", request->rate, "Samples a second, 1 to 1000000")->required()->check(CLI::Range(1, 1000000));
  tool::AddJson(command, context);
  tool::OnCall(command, request, context, RunResample);
}

void AddPlot(CLI::App& wav, tool::Context& context) {
  const auto request = std::make_shared<PlotRequest>();
  CLI::App* command = tool::NewCommand(wav, "plot", "The picture of a sound, a band a channel, clipped samples in red",
                                       "  qxvtool wav plot voice.wav voice.bmp\n"
                                       "  qxvtool wav plot voice.wav voice.jpg --size 1600x400");
  command->add_option("IN", request->source, "A WAV file of 8, 16, 24 or 32 bits")->required();
  command->add_option("OUT", request->target, "The image; its extension decides the type")->required();
  command->add_option("--size", request->size, "Width and height")->capture_default_str();
  tool::AddJson(command, context);
  tool::OnCall(command, request, context, RunPlot);
}

}  // namespace

void tool::AddWav(CLI::App& app, Context& context) {
  CLI::App* wav = NewGroup(app, "wav", "Sounds: info, convert, resample, plot");
  AddInfo(*wav, context);
  AddConvert(*wav, context);
  AddResample(*wav, context);
  AddPlot(*wav, context);
}
