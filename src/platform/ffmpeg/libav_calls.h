#pragma once

#include "platform/ffmpeg/libav.h"

namespace tavlo::platform {

/// What we call of FFmpeg's two large libraries. They bring a hundred others along, which takes a
/// start longer than all that the deck does itself; so they are loaded beside it, not before it.
struct LibavCalls {
  bool loaded = false;  ///< Else nothing here can be called.

  decltype(&::av_packet_alloc) av_packet_alloc = nullptr;
  decltype(&::av_packet_free) av_packet_free = nullptr;
  decltype(&::av_packet_unref) av_packet_unref = nullptr;
  decltype(&::avcodec_alloc_context3) avcodec_alloc_context3 = nullptr;
  decltype(&::avcodec_find_decoder) avcodec_find_decoder = nullptr;
  decltype(&::avcodec_flush_buffers) avcodec_flush_buffers = nullptr;
  decltype(&::avcodec_free_context) avcodec_free_context = nullptr;
  decltype(&::avcodec_open2) avcodec_open2 = nullptr;
  decltype(&::avcodec_parameters_alloc) avcodec_parameters_alloc = nullptr;
  decltype(&::avcodec_parameters_free) avcodec_parameters_free = nullptr;
  decltype(&::avcodec_parameters_to_context) avcodec_parameters_to_context = nullptr;
  decltype(&::avcodec_receive_frame) avcodec_receive_frame = nullptr;
  decltype(&::avcodec_send_packet) avcodec_send_packet = nullptr;

  decltype(&::av_find_input_format) av_find_input_format = nullptr;
  decltype(&::av_read_frame) av_read_frame = nullptr;
  decltype(&::av_seek_frame) av_seek_frame = nullptr;
  decltype(&::avformat_alloc_context) avformat_alloc_context = nullptr;
  decltype(&::avformat_close_input) avformat_close_input = nullptr;
  decltype(&::avformat_find_stream_info) avformat_find_stream_info = nullptr;
  decltype(&::avformat_open_input) avformat_open_input = nullptr;
  decltype(&::avio_alloc_context) avio_alloc_context = nullptr;
  decltype(&::avio_context_free) avio_context_free = nullptr;
};

/// The calls; the first one to ask waits until the libraries are loaded (some 30 ms). For any
/// thread. Where a library is missing, only waves of plain samples can be decoded. Throws
/// std::bad_alloc when the process has no handle left to load them with; a later call tries again.
const LibavCalls& Libav();

}  // namespace tavlo::platform
