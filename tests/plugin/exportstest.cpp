// A library for the export check; its CMake target says which of these it exports.
extern "C" {
void CreateUpdatePlugin();
void GetUpdateKelvar();
void StartKelvarService();
void Surplus();
}

void CreateUpdatePlugin() {}
void GetUpdateKelvar() {}
void StartKelvarService() {}
void Surplus() {}
