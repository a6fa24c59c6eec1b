// commands.h - the families of commands, one source each. Every function here adds one to the command line.
#pragma once

#include "qxvtool/support/arguments.h"

namespace tool {

void AddCrc(CLI::App& app, Context& context);
void AddDict(CLI::App& app, Context& context);
void AddDisk(CLI::App& app, Context& context);
void AddGeometry(CLI::App& app, Context& context);
void AddGuid(CLI::App& app, Context& context);
void AddImage(CLI::App& app, Context& context);
void AddIni(CLI::App& app, Context& context);
void AddLog(CLI::App& app, Context& context);
void AddMd5(CLI::App& app, Context& context);
void AddNet(CLI::App& app, Context& context);
void AddPath(CLI::App& app, Context& context);
void AddReg(CLI::App& app, Context& context);
void AddRound(CLI::App& app, Context& context);
void AddSpline(CLI::App& app, Context& context);
void AddWav(CLI::App& app, Context& context);
void AddWho(CLI::App& app, Context& context);
void AddXml(CLI::App& app, Context& context);

}  // namespace tool
