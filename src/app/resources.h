#pragma once

// The numbers of the pictures in the program file; the resource script reads this too.
#define NQP_VIDEO_PICTURE 201
#define NQP_AUDIO_PICTURE 202
#define NQP_IMAGE_PICTURE 203
