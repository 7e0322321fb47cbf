// zvp: decodes video through the library, for the eye and for the sceptic.
#include <CLI/CLI.hpp>
#include <cstdio>

#include "commands.h"
#include "source.h"

extern "C" {
#include <libavutil/log.h>
}

int main(int argc, char** argv) {
  av_log_set_level(AV_LOG_QUIET);
  CLI::App app{"Decodes video through libzvpvcmx."};
  app.require_subcommand(1);

  zvptool::DecodeOptions decode;
  CLI::App* decodeCommand = app.add_subcommand("decode", "decode a file");
  decodeCommand->add_option("input", decode.input, "elementary stream or container")->required();
  decodeCommand->add_option("-o,--output", decode.output, "what to write: .y4m, .yuv, or a contact sheet as .png");
  decodeCommand->add_option("--frames", decode.frames, "stop after this many frames")->check(CLI::PositiveNumber);
  decodeCommand->add_flag("--md5", decode.md5, "print the MD5 of all planes of all frames");

  decodeCommand->add_option("--zoom", decode.preview.zoom, "DV: pictures of a half, a quarter or an eighth of the size")
      ->check(CLI::IsMember({2, 4, 8}));
  decodeCommand->add_flag("--draft", decode.preview.draft, "DV, with --zoom 2: coarser pictures for less work");

  zvptool::CompareOptions compare;
  CLI::App* compareCommand = app.add_subcommand("compare", "decode with libavcodec as well and compare every sample");
  compareCommand->add_option("input", compare.input, "elementary stream or container")->required();
  compareCommand->add_option("--frames", compare.frames, "stop after this many frames")->check(CLI::PositiveNumber);

  zvptool::FilterOptions filter;
  CLI::App* filterCommand = app.add_subcommand("filter", "deinterlace or denoise a file that libavcodec decodes");
  filterCommand->add_option("input", filter.input, "any video file, Y4M too")->required();
  filterCommand->add_option("-o,--output", filter.output, "what to write: .y4m, .yuv, or a contact sheet as .png");
  filterCommand->add_option("--deinterlace", filter.deinterlace, "one frame for each frame, the first field being kept")
      ->check(CLI::IsMember({"triangle", "edge", "median", "blend", "motion"}));
  filterCommand->add_option("--denoise", filter.denoise, "in time and space")->check(CLI::IsMember({"cast"}));
  filterCommand->add_option("--field-order", filter.fieldOrder, "which field is the earlier one")
      ->check(CLI::IsMember({"auto", "top", "bottom"}));
  filterCommand->add_flag("--packed", filter.packed, "denoise 4:2:2 as packed samples; packed files are anyway");
  filterCommand->add_option("--compare", filter.compare, "write a picture of before and after with a magnified part");
  filterCommand->add_option("--original", filter.original, "print the PSNR against this file, before and after");
  filterCommand->add_option("--frames", filter.frames, "stop after this many frames")->check(CLI::PositiveNumber);

  std::string infoInput;
  CLI::App* infoCommand = app.add_subcommand("info", "tell what a file holds");
  infoCommand->add_option("input", infoInput, "elementary stream or container")->required();

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  }
  try {
    if (*decodeCommand) return zvptool::decode(decode);
    if (*compareCommand) return zvptool::compare(compare);
    if (*filterCommand) return zvptool::filter(filter);
    return zvptool::info(infoInput);
  } catch (const zvptool::ToolError& error) {
    std::fprintf(stderr, "zvp: %s\n", error.what());
  } catch (const std::bad_alloc&) {
    std::fprintf(stderr, "zvp: not enough memory\n");
  }
  return 1;
}
