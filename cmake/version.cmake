# The only place where the version and the build number stand.
set(ORLIX_VERSION 1.0.0)
set(ORLIX_BUILD 1)
set(ORLIX_BUNDLE_IDENTIFIER com.dovu.velmorandix)
set(ORLIX_APP_NAME "Velmorandix Orlix")
