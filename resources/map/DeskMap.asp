<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta http-equiv="Content-Security-Policy" content="default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' data:; connect-src 'self'; base-uri 'none'; form-action 'none'">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>Map</title>
<link rel="icon" href="data:,">
<link rel="stylesheet" href="vendor/leaflet/leaflet.css">
<link rel="stylesheet" href="css/page.css">
<script defer src="vendor/leaflet/leaflet.js"></script>
<script defer src="vendor/topojson-client/topojson-client.min.js"></script>
<script defer src="js/pageLog.js"></script>
<script defer src="js/texts.js"></script>
<script defer src="js/preferences.js"></script>
<script defer src="js/mercator.js"></script>
<script defer src="js/routeProtocol.js"></script>
<script defer src="js/route.js"></script>
<script defer src="js/routeTable.js"></script>
<script defer src="js/hitTest.js"></script>
<script defer src="js/nearest.js"></script>
<script defer src="js/viewCanvas.js"></script>
<script defer src="js/worldData.js"></script>
<script defer src="js/baseMap.js"></script>
<script defer src="js/graticule.js"></script>
<script defer src="js/routePainter.js"></script>
<script defer src="js/car.js"></script>
<script defer src="js/clearance.js"></script>
<script defer src="js/viewControl.js"></script>
<script defer src="js/controls.js"></script>
<script defer src="js/notices.js"></script>
<script defer src="js/layersPanel.js"></script>
<script defer src="js/clicks.js"></script>
<script defer src="js/recordingData.js"></script>
<script defer src="js/speedColours.js"></script>
<script defer src="js/hover.js"></script>
<script defer src="js/configuration.js"></script>
<script defer src="js/streetTiles.js"></script>
<script defer src="js/wholeWindow.js"></script>
<script defer src="js/contract.js"></script>
<script defer src="js/main.js"></script>
</head>
<body>
<div id="map"></div>
</body>
</html>
