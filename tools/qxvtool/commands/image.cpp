// image.cpp - qxvtool image: what a picture holds, pictures in other types and sizes, the frames of an animation.

#include "qxv/image.h"

#include "qxvtool/commands/commands.h"
#include "qxvtool/support/failure.h"
#include "qxvtool/support/files.h"
#include "qxvtool/support/picture.h"
#include "qxvtool/support/text.h"

#include <array>
#include <cstdio>
#include <optional>

namespace {

using tool::Value;

struct InfoRequest {
  std::vector<std::string> files;
};

struct ConvertRequest {
  std::string source, target, size;
  std::optional<int> frame;
};

struct FramesRequest {
  std::string source, folder;
  std::string type = "bmp";
};

// A file that is open for its frames.
class Source {
 public:
  explicit Source(const std::string& path) : m_path(path), m_reader(QXVCOMMONLIB_GetImageReader()) {
    const tool::InputFile file(path);  // says better than a status code why it cannot be opened
    m_bytes = file.Size();
    Check(m_reader->SetFile(tool::Wide(path)));
    Check(m_reader->GetImageInfoEx(&m_info));
  }

  const QXVImageInfo& Info() const { return m_info; }
  std::uint64_t Bytes() const { return m_bytes; }

  tool::Pixels Frame(int frame, unsigned int layout, tool::Size size) {
    const QXVPixelLayout shape{layout, size.width, size.height, 0};
    Check(m_reader->SetOutputLayout(&shape));
    unsigned char* pixels = nullptr;
    Check(m_reader->ReadFrame(static_cast<unsigned int>(frame), &pixels));
    return tool::Pixels(pixels);
  }

 private:
  void Check(int status) const {
    if (status != QXV_IMAGE_STATUS_OK) {
      throw tool::Failure(m_path, tool::ImageReason(status));
    }
  }

  std::string m_path;
  std::unique_ptr<CQXVImageReader> m_reader;
  QXVImageInfo m_info{};
  std::uint64_t m_bytes = 0;
};

std::string SizeText(tool::Size size) { return std::to_string(size.width) + " x " + std::to_string(size.height); }

Value::Record Describe(const std::string& path) {
  const Source source(path);
  const QXVImageInfo& info = source.Info();
  Value::Record record = {{"type", tool::TypeName(info.nType)},
                          {"width", info.nWidth},
                          {"height", info.nHeight},
                          {"layout", tool::LayoutName(info.nPixelLayout)},
                          {"frames", info.nFrames}};
  if (info.nType == QXV_IMAGE_TYPE_GIF) {
    record.push_back({"frame_milliseconds", info.nFrameTime});
  }
  record.push_back({"bytes", source.Bytes()});
  return record;
}

void RunInfo(const InfoRequest& request, tool::Context& context) {
  const auto text = [](const std::string& path, const Value::Record& record) { return path + '\n' + tool::Lines(record, "  "); };
  context.AnswerEach("file", request.files, Describe, text);
}

void RunConvert(const ConvertRequest& request, tool::Context& context) {
  const unsigned int layout = tool::LayoutOfWrittenFile(request.target);
  Source source(request.source);
  const QXVImageInfo& info = source.Info();
  const tool::Size size = request.size.empty() ? tool::Size{info.nWidth, info.nHeight} : tool::ParseSize(request.size);
  if (request.frame && (*request.frame < 1 || *request.frame > info.nFrames)) {
    throw tool::Failure(request.source,
                        "has no frame " + std::to_string(*request.frame) + " (there are " + std::to_string(info.nFrames) + ")");
  }
  const bool isAnimated = tool::ImageExtension(request.target) == "gif" && !request.frame;
  const int frames = isAnimated ? info.nFrames : 1;
  const int first = request.frame.value_or(1) - 1;
  tool::WriteImage(request.target, size, frames, [&](int frame) { return source.Frame(first + frame, layout, size); });
  const Value::Record answer = {{"file", request.target}, {"width", size.width}, {"height", size.height}, {"frames", frames}};
  context.Answer(answer,
                 request.target + ": " + SizeText(size) + (frames > 1 ? ", " + std::to_string(frames) + " frames\n" : "\n"));
}

void RunFrames(const FramesRequest& request, tool::Context& context) {
  const std::string start = tool::AsFolder(request.folder) + tool::StemOf(request.source) + '_';
  const unsigned int layout = tool::LayoutOfWrittenFile(start + '.' + request.type);
  Source source(request.source);
  const QXVImageInfo& info = source.Info();
  const tool::Size size{info.nWidth, info.nHeight};
  tool::MakeFolder(request.folder);
  Value::List files;
  std::string lines;
  for (int i = 0; i < info.nFrames; ++i) {
    std::array<char, 16> number{};
    (void)std::snprintf(number.data(), number.size(), "%03d", i + 1);
    const std::string path = start + number.data() + '.' + request.type;
    tool::WriteImage(path, size, 1, [&](int) { return source.Frame(i, layout, size); });
    files.emplace_back(path);
    lines += path + '\n';
  }
  context.Answer(files, lines);
}

void AddInfo(CLI::App& image, tool::Context& context) {
  const auto request = std::make_shared<InfoRequest>();
  CLI::App* command = tool::NewCommand(image, "info", "What image files hold",
                                       "  qxvtool image info photo.jpg anim.gif\n"
                                       "  qxvtool image info *.tga --json");
  command->add_option("FILE", request->files, "tga, bmp, tif, gif, pcx, yuv, jpg or png")->required();
  tool::AddJson(command, context);
  tool::OnCall(command, request, context, RunInfo);
}

void AddConvert(CLI::App& image, tool::Context& context) {
  const auto request = std::make_shared<ConvertRequest>();
  CLI::App* command = tool::NewCommand(image, "convert", "An image in another type or size",
                                       "  qxvtool image convert logo.png logo.tga\n"
                                       "  qxvtool image convert photo.jpg small.bmp --size 320x200\n"
                                       "  qxvtool image convert anim.gif third.jpg --frame 3\n"
                                       "  qxvtool image convert anim.gif half.gif --size 160x100      keeps all frames");
  command->add_option("IN", request->source, "tga, bmp, tif, gif, pcx, yuv, jpg or png")->required();
  command->add_option("OUT", request->target, "tga, bmp, gif, pcx, yuv or jpg; its extension decides the type")->required();
  command->add_option("--size", request->size, "Width and height, as 320x200; without it they stay");
  command->add_option("--frame", request->frame, "One frame of an animation, from 1 on");
  tool::AddJson(command, context);
  tool::OnCall(command, request, context, RunConvert);
}

void AddFrames(CLI::App& image, tool::Context& context) {
  const auto request = std::make_shared<FramesRequest>();
  CLI::App* command = tool::NewCommand(image, "frames", "Every frame of an image as a file of its own",
                                       "  qxvtool image frames anim.gif stills\n"
                                       "  qxvtool image frames anim.gif stills --type jpg");
  command->add_option("IN", request->source, "An animated gif, or any image of one frame")->required();
  command->add_option("FOLDER", request->folder, "Takes the files; made when it is missing")->required();
  command->add_option("--type", request->type, "tga, bmp, gif, pcx, yuv or jpg")->capture_default_str();
  tool::AddJson(command, context);
  tool::OnCall(command, request, context, RunFrames);
}

}  // namespace

void tool::AddImage(CLI::App& app, Context& context) {
  CLI::App* image = NewGroup(app, "image", "Pictures: info, convert, frames");
  AddInfo(*image, context);
  AddConvert(*image, context);
  AddFrames(*image, context);
}
