// What a driver needs that lies where the system's loader does not look.

extern "C" int absentLibrary();

int absentLibrary()
{
    return 0;
}
