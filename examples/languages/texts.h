// The numbers of the texts, for the sources and the resource scripts.

// The program's.
#define IDS_LANGUAGE 1
#define IDS_WELCOME 2
#define IDS_SHIPS 3

// The library's.
#define IDS_DAYS 1
#define IDS_TIDE 2
