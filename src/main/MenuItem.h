#pragma once

/// The pages of the main window; the values are fixed.
struct MenuItem
{
    enum MENU_ITEM {
        MENU_HOME = 0,
        MENU_SETTING = 1,
        MENU_LOG = 2,
        MENU_ABOUT = 3,
        MENU_QUIT = 4,
        MENU_INTRANET = 5, ///< takes the home page's place in intranet mode
        MENU_END = 6
    };
};
