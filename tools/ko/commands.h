// The commands of the ko tool, one source file each.
#pragma once

#include "cli.h"

namespace ko::cli {

extern const CommandDoc kInfoDoc;
extern const CommandDoc kListDoc;
extern const CommandDoc kProjectDoc;
extern const CommandDoc kTransformDoc;

int run_info(int argc, char **argv);
int run_list(int argc, char **argv);
int run_project(int argc, char **argv);
int run_transform(int argc, char **argv);

}  // namespace ko::cli
