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

  zvptool::CompareOptions compare;
  CLI::App* compareCommand = app.add_subcommand("compare", "decode with libavcodec as well and compare every sample");
  compareCommand->add_option("input", compare.input, "elementary stream or container")->required();
  compareCommand->add_option("--frames", compare.frames, "stop after this many frames")->check(CLI::PositiveNumber);

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
    return zvptool::info(infoInput);
  } catch (const zvptool::ToolError& error) {
    std::fprintf(stderr, "zvp: %s\n", error.what());
  } catch (const std::bad_alloc&) {
    std::fprintf(stderr, "zvp: not enough memory\n");
  }
  return 1;
}
