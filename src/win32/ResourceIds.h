#pragma once

// The resources the program carries (norvale-backup.rc); plain numbers, as windres reads this too.
#define NV_IDI_PROGRAM 1
#define NV_IDB_ABOUT_LOGO 101
#define NV_IDB_SPLASH_BANNER 102
#define NV_IDB_SPLASH_SQUARE 103
