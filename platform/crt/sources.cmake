# code pages, messages, formatting, character functions
