#pragma once

// FFmpeg's headers are C and do not say so.
extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/channel_layout.h>
#include <libavutil/common.h>
#include <libavutil/log.h>
#include <libavutil/mem.h>
}
