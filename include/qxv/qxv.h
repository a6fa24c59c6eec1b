// qxv.h - every header of the library but interop.h, which is for those who ask for it.
#pragma once

#include "qxv/array.h"
#include "qxv/buffer_file.h"
#include "qxv/conversion.h"
#include "qxv/crc.h"
#include "qxv/export.h"
#include "qxv/factories.h"
#include "qxv/float_buffer.h"
#include "qxv/guid.h"
#include "qxv/host.h"
#include "qxv/module.h"
#include "qxv/stream_buffer.h"
#include "qxv/string.h"
#include "qxv/types.h"
#include "qxv/version.h"
